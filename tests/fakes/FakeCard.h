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

/// The properties of that card.
std::vector<CardProperty> propertiesOf(const FakePerson& person);

/// A card of each list that these people are members of, with a line end after it.
std::string listCardsOf(const std::vector<FakePerson>& people);

/// A property with one text.
CardProperty textProperty(const std::string& name, const std::string& text,
                          const std::string& label = {});

}  // namespace dunmora::test
