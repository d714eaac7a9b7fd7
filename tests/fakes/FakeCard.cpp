#include "tests/fakes/FakeCard.h"

#include <ctime>
#include <vector>

namespace dunmora::test {

std::string cardOf(const FakePerson& person)
{
    std::string text = "BEGIN:VCARD\r\nVERSION:3.0\r\nUID:" + person.uid + "\r\n";
    if (person.firstName || person.lastName) {
        text += "N:" + person.lastName.value_or("") + ";" + person.firstName.value_or("") + "\r\n";
    }
    if (person.nickname) {
        text += "NICKNAME:" + *person.nickname + "\r\n";
    }
    if (person.modified) {
        const std::time_t seconds = person.modified->time_since_epoch().count();
        std::tm parts{};
        gmtime_r(&seconds, &parts);
        std::string date(sizeof "20240501T100000Z", '\0');
        date.resize(std::strftime(date.data(), date.size(), "%Y%m%dT%H%M%SZ", &parts));
        text += "REV:" + date + "\r\n";
    }
    int group = 0;
    for (const auto& phone : person.phones.value_or(std::vector<FakePerson::Phone>())) {
        const auto prefix = "item" + std::to_string(++group) + ".";
        text += prefix + "TEL:" + phone.value + "\r\n";
        if (phone.label) {
            text += prefix + "X-ABLabel:" + *phone.label + "\r\n";
        }
    }
    return text + "END:VCARD\r\n";
}

}  // namespace dunmora::test
