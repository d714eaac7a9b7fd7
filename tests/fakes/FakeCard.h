#pragma once

#include "tests/fakes/FakeAddressBook.h"

#include <string>

namespace dunmora::test {

/// The person as a vCard 3.0, with a line end after it.
std::string cardOf(const FakePerson& person);

}  // namespace dunmora::test
