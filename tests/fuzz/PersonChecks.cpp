#include "tests/fuzz/PersonChecks.h"

#include <cstddef>

namespace dunmora::test {

namespace {

bool samePhones(const Person& a, const Person& b)
{
    const auto ours = a.phones.value_or(PhoneList());
    const auto theirs = b.phones.value_or(PhoneList());
    if (ours.size() != theirs.size()) {
        return false;
    }
    for (std::size_t i = 0; i < ours.size(); ++i) {
        if (ours[i].label != theirs[i].label || ours[i].value != theirs[i].value) {
            return false;
        }
    }
    return true;
}

}  // namespace

bool isUtf8Text(std::string_view text)
{
    for (std::size_t i = 0; i < text.size();) {
        const auto byte = [&](std::size_t at) -> unsigned {
            return at < text.size() ? static_cast<unsigned char>(text[at]) : 0U;
        };
        const auto lead = byte(i);
        const std::size_t length = lead < 0x80                    ? 1
                                   : lead >= 0xC2 && lead <= 0xDF ? 2
                                   : lead >= 0xE0 && lead <= 0xEF ? 3
                                   : lead >= 0xF0 && lead <= 0xF4 ? 4
                                                                  : 0;
        if (length == 0) {
            return false;
        }
        for (std::size_t j = 1; j < length; ++j) {
            const auto lowest = j > 1 ? 0x80U : lead == 0xE0 ? 0xA0U : lead == 0xF0 ? 0x90U : 0x80U;
            const auto highest = j > 1          ? 0xBFU
                                 : lead == 0xED ? 0x9FU
                                 : lead == 0xF4 ? 0x8FU
                                                : 0xBFU;
            if (byte(i + j) < lowest || byte(i + j) > highest) {
                return false;
            }
        }
        i += length;
    }
    return true;
}

bool hasOnlyUtf8(const Person& person)
{
    bool valid = isUtf8Text(person.uid) && isUtf8Text(person.firstName.value_or("")) &&
                 isUtf8Text(person.lastName.value_or("")) &&
                 isUtf8Text(person.nickname.value_or(""));
    for (const auto& phone : person.phones.value_or(PhoneList())) {
        valid = valid && isUtf8Text(phone.label.value_or("")) && isUtf8Text(phone.value);
    }
    return valid;
}

bool haveSameFields(const Person& a, const Person& b)
{
    return a.firstName == b.firstName && a.lastName == b.lastName && a.nickname == b.nickname &&
           a.modified == b.modified && samePhones(a, b);
}

}  // namespace dunmora::test
