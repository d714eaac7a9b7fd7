#pragma once

#include "tests/fakes/FakeAddressBook.h"

#include <string>
#include <string_view>
#include <vector>

namespace dunmora::test {

/// The person as a vCard 3.0, with a line end after it.
std::string cardOf(const FakePerson& person);

/// The people of a text that consists of such cards.
std::vector<FakePerson> peopleOf(std::string_view cards);

}  // namespace dunmora::test
