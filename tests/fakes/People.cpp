#include "tests/fakes/People.h"

#include <utility>

namespace dunmora::test {

FakePerson person(const std::string& uid, const std::string& firstName)
{
    FakePerson result;
    result.uid = uid;
    result.firstName = firstName;
    return result;
}

FakePerson named(const std::string& uid, const std::string& firstName, const std::string& lastName)
{
    auto result = person(uid, firstName);
    result.lastName = lastName;
    result.nickname.reset();
    result.phones.reset();
    return result;
}

FakePerson withPhones(FakePerson person, std::vector<FakePerson::Phone> phones)
{
    person.phones = std::move(phones);
    return person;
}

FakePerson withMobile(FakePerson person, const std::string& number)
{
    return withPhones(std::move(person), {{"_$!<Mobile>!$_", number}});
}

}  // namespace dunmora::test
