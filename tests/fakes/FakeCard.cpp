#include "tests/fakes/FakeCard.h"

#include <algorithm>
#include <chrono>
#include <ctime>
#include <optional>
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

std::vector<FakePerson> peopleOf(std::string_view cards)
{
    std::vector<FakePerson> people;
    const auto takeUntil = [](std::string_view& text, std::string_view end) {
        const auto part = text.substr(0, text.find(end));
        text.remove_prefix(std::min(part.size() + end.size(), text.size()));
        return part;
    };
    while (!cards.empty()) {
        auto value = takeUntil(cards, "\r\n");
        const auto name = takeUntil(value, ":");
        if (name == "BEGIN") {
            people.push_back({{}, {}, {}, {}, {}, {}});
        } else if (people.empty()) {
            continue;
        }
        auto& person = people.back();
        if (name == "UID") {
            person.uid = value;
        } else if (name == "N") {
            person.lastName = takeUntil(value, ";");
            person.firstName = value;
        } else if (name == "NICKNAME") {
            person.nickname = value;
        } else if (name == "REV") {
            std::tm parts{};
            strptime(std::string(value).c_str(), "%Y%m%dT%H%M%SZ", &parts);
            person.modified = std::chrono::sys_seconds(std::chrono::seconds(timegm(&parts)));
        } else if (name.ends_with(".TEL")) {
            if (!person.phones) {
                person.phones.emplace();
            }
            person.phones->push_back({std::nullopt, std::string(value)});
        } else if (name.ends_with(".X-ABLabel")) {
            person.phones->back().label = value;
        }
    }
    return people;
}

}  // namespace dunmora::test
