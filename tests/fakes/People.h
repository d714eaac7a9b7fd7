#pragma once

#include "tests/fakes/FakeAddressBook.h"

#include <string>
#include <vector>

namespace dunmora::test {

/// A person with every field filled.
FakePerson person(const std::string& uid, const std::string& firstName = "Ann");

/// A person with a first and a last name, but without a nickname and without phone numbers.
FakePerson named(const std::string& uid, const std::string& firstName,
                 const std::string& lastName = "Lee");

FakePerson withPhones(FakePerson person, std::vector<FakePerson::Phone> phones);
FakePerson withMobile(FakePerson person, const std::string& number = "555-0100");

}  // namespace dunmora::test
