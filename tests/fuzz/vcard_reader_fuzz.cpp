#include "adapters/vcard/CardReader.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace {

using dunmora::CardReader;
using dunmora::Person;

void require(bool holds, const char* what)
{
    if (!holds) {
        static_cast<void>(std::fputs(what, stderr));
        std::abort();
    }
}

/// RFC 3629 §4, written independently of text/Utf8, whose result it checks.
bool isUtf8(std::string_view text)
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
    bool valid = isUtf8(person.uid) && isUtf8(person.firstName.value_or("")) &&
                 isUtf8(person.lastName.value_or("")) && isUtf8(person.nickname.value_or(""));
    for (const auto& phone : person.phones.value_or(dunmora::PhoneList())) {
        valid = valid && isUtf8(phone.label.value_or("")) && isUtf8(phone.value);
    }
    return valid;
}

bool samePhones(const Person& a, const Person& b)
{
    const auto ours = a.phones.value_or(dunmora::PhoneList());
    const auto theirs = b.phones.value_or(dunmora::PhoneList());
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

bool samePerson(const Person& a, const Person& b)
{
    return a.uid == b.uid && a.firstName == b.firstName && a.lastName == b.lastName &&
           a.nickname == b.nickname && a.modified == b.modified && samePhones(a, b);
}

void requireOrderedRanges(const CardReader::Cards& cards, std::size_t size)
{
    require(cards.people.size() == cards.ranges.size(), "there is not one range for each person");
    std::size_t position = 0;
    for (const auto& range : cards.ranges) {
        require(range.begin >= position, "ranges overlap or are out of order");
        require(range.begin < range.end && range.end <= size, "a range is outside the text");
        require(range.lineEndSize < range.end - range.begin, "a line end is longer than its card");
        position = range.end;
    }
}

/// Checks what deletion relies on: without the bytes of one card, the others are read as before.
void requireOthersStay(std::string_view text, const CardReader::Cards& cards, std::size_t removed)
{
    const auto& range = cards.ranges[removed];
    std::string rest(text.substr(0, range.begin));
    rest += text.substr(range.end);
    CardReader reader;
    CardReader::Cards others;
    reader.read(rest, CardReader::Text::Bytes, others);

    require(others.people.size() + 1 == cards.people.size(),
            "a deletion changed the number of other people");
    for (std::size_t i = 0; i < others.people.size(); ++i) {
        require(samePerson(others.people[i], cards.people[i < removed ? i : i + 1]),
                "a deletion changed another person");
    }
}

}  // namespace

// NOLINTNEXTLINE(readability-identifier-naming): libFuzzer calls it by this name.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string text(data, data + size);
    CardReader reader;
    CardReader::Cards cards;
    reader.read(text, CardReader::Text::Bytes, cards);

    requireOrderedRanges(cards, text.size());
    for (const auto& person : cards.people) {
        require(hasOnlyUtf8(person), "a text is not UTF-8");
    }
    // A card without END before a removed one would extend into the text after it.
    constexpr std::size_t kRemovals = 8;
    for (std::size_t i = 0; cards.skipped.empty() && i < cards.people.size() && i < kRemovals;
         ++i) {
        requireOthersStay(text, cards, i);
    }
    return 0;
}
