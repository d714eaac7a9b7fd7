#include "adapters/vcard/RemainingCard.h"

#include <algorithm>

namespace dunmora {

namespace {

bool samePhones(const PhoneList& a, const PhoneList& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](const LabelledPhone& one, const LabelledPhone& other) {
                          return one.label == other.label && one.value == other.value;
                      });
}

bool sameFields(const Person& a, const Person& b)
{
    return a.firstName == b.firstName && a.lastName == b.lastName && a.nickname == b.nickname &&
           a.modified == b.modified && a.phones.has_value() == b.phones.has_value() &&
           samePhones(a.phones.value_or(PhoneList()), b.phones.value_or(PhoneList()));
}

}  // namespace

bool RemainingCard::isReadAs(std::string_view readBytes, const Person& readPerson) const
{
    return readBytes == bytes && sameFields(readPerson, *person);
}

}  // namespace dunmora
