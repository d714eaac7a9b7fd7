#include "tests/fakes/FakeCard.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <map>
#include <optional>
#include <string_view>
#include <vector>

namespace dunmora::test {

namespace {

/// The text with the escapes of RFC 2426 §5.
std::string escaped(std::string_view text)
{
    std::string result;
    for (const char c : text) {
        if (c == '\n') {
            result += "\\n";
            continue;
        }
        if (c == '\\' || c == ';' || c == ',') {
            result += '\\';
        }
        result += c;
    }
    return result;
}

std::string base64(std::string_view bytes)
{
    constexpr std::string_view kDigits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        std::uint32_t bits = 0;
        for (std::size_t j = i; j < i + 3; ++j) {
            bits = bits << 8U | (j < bytes.size() ? static_cast<unsigned char>(bytes[j]) : 0U);
        }
        for (std::size_t j = 0; j < 4; ++j) {
            text += i + j > bytes.size() ? '=' : kDigits[bits >> (18 - 6 * j) & 0x3FU];
        }
    }
    return text;
}

std::string dateOf(std::chrono::sys_seconds time)
{
    const std::time_t seconds = time.time_since_epoch().count();
    std::tm parts{};
    gmtime_r(&seconds, &parts);
    std::string date(sizeof "20240501T100000Z", '\0');
    date.resize(std::strftime(date.data(), date.size(), "%Y%m%dT%H%M%SZ", &parts));
    return date;
}

void appendProperty(std::string& text, const CardProperty& property, int group)
{
    const auto prefix = group > 0 ? "item" + std::to_string(group) + "." : "";
    text += prefix + property.name;
    if (property.binary) {
        const auto& type = property.binary->mediaType;
        text += ";ENCODING=b";
        text += type.empty() ? "" : ";TYPE=" + type.substr(type.find('/') + 1);
        text += ":" + base64(property.binary->bytes);
    } else {
        char separator = ':';
        for (const auto& component : property.components) {
            text += separator + escaped(component);
            separator = ';';
        }
    }
    text += "\r\n";
    if (!property.label.empty()) {
        text += prefix + "X-ABLabel:" + escaped(property.label) + "\r\n";
    }
}

}  // namespace

CardProperty textProperty(const std::string& name, const std::string& text,
                          const std::string& label)
{
    return {name, label, {text}, {}};
}

std::vector<CardProperty> propertiesOf(const FakePerson& person)
{
    std::vector<CardProperty> properties{textProperty("VERSION", "3.0"),
                                         textProperty("UID", person.uid)};
    if (person.firstName || person.lastName) {
        properties.push_back(
            {"N", {}, {person.lastName.value_or(""), person.firstName.value_or("")}, {}});
    }
    if (person.nickname) {
        properties.push_back(textProperty("NICKNAME", *person.nickname));
    }
    if (person.modified) {
        properties.push_back(textProperty("REV", dateOf(*person.modified)));
    }
    for (const auto& phone : person.phones.value_or(std::vector<FakePerson::Phone>())) {
        properties.push_back(textProperty("TEL", phone.value, phone.label.value_or("")));
    }
    properties.insert(properties.end(), person.properties.begin(), person.properties.end());
    return properties;
}

std::string cardOf(const FakePerson& person)
{
    std::string text = "BEGIN:VCARD\r\n";
    int groups = 0;
    for (const auto& property : propertiesOf(person)) {
        appendProperty(text, property, property.label.empty() ? 0 : ++groups);
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
        } else if (name != "BEGIN" && name != "VERSION" && name != "END") {
            person.properties.push_back(textProperty(std::string(name), std::string(value)));
        }
    }
    return people;
}

std::string listCardsOf(const std::vector<FakePerson>& people)
{
    std::map<std::string, std::string> members;
    for (const auto& person : people) {
        for (const auto& list : person.lists) {
            members[list] += "X-ADDRESSBOOKSERVER-MEMBER:urn:uuid:" + person.uid + "\r\n";
        }
    }
    std::string text;
    for (const auto& [name, uids] : members) {
        text +=
            "BEGIN:VCARD\r\nVERSION:3.0\r\nX-ADDRESSBOOKSERVER-KIND:group\r\nFN:" + escaped(name) +
            "\r\n" + uids + "END:VCARD\r\n";
    }
    return text;
}

}  // namespace dunmora::test
