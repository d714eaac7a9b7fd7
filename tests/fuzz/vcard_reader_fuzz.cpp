#include "adapters/vcard/CardProperties.h"
#include "adapters/vcard/CardReader.h"
#include "adapters/vcard/LineEnd.h"
#include "tests/fuzz/PersonChecks.h"
#include "tests/fuzz/ReadingMethods.h"
#include "tests/fuzz/Requirement.h"
#include "text/Ascii.h"

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace {

using dunmora::CardProperty;
using dunmora::CardReader;
using dunmora::equalsIgnoringCase;
using dunmora::isBlank;
using dunmora::trimmed;
using dunmora::test::differenceOfMethods;
using dunmora::test::hasOnlyUtf8;
using dunmora::test::haveSameFields;
using dunmora::test::isUtf8Text;
using dunmora::test::require;

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

/// Splits the text into lines without their ends; empty lines are omitted.
std::vector<std::string_view> linesOf(std::string_view text)
{
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const auto end = std::min(text.find_first_of("\r\n"), text.size());
        if (end > 0) {
            lines.push_back(text.substr(0, end));
        }
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

/// Whether the line is BEGIN:VCARD, in any case and with blanks around either word.
bool isBeginLine(std::string_view line)
{
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    while (line.starts_with(kByteOrderMark) || line.starts_with('\0')) {
        line.remove_prefix(line.front() == '\0' ? 1 : kByteOrderMark.size());
    }
    const auto colon = line.find(':');
    return colon != std::string_view::npos &&
           equalsIgnoringCase(trimmed(line.substr(0, colon)), "BEGIN") &&
           equalsIgnoringCase(trimmed(line.substr(colon + 1)), "VCARD");
}

/// Checks that nobody's card contains another person's: apart from AGENT and folded lines, a card
/// has one BEGIN line. A card that mentions AGENT anywhere, folded or not, is not checked.
void requireOneBeginLine(std::string_view card)
{
    std::string unfolded;
    std::size_t beginLines = 0;
    for (const auto line : linesOf(card)) {
        const bool isFolded = !unfolded.empty() && isBlank(line.front());
        beginLines += !isFolded && isBeginLine(line) ? 1 : 0;
        unfolded += isFolded ? "" : "\n";
        unfolded += trimmed(line);
    }
    std::transform(unfolded.begin(), unfolded.end(), unfolded.begin(), dunmora::toUpperAscii);
    require(beginLines == 1 || unfolded.find("AGENT") != std::string::npos,
            "a card contains another one");
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
        const auto& before = cards.people[i < removed ? i : i + 1];
        require(others.people[i].uid == before.uid && haveSameFields(others.people[i], before),
                "a deletion changed another person");
    }
}

bool hasOnlyUtf8(const CardProperty& property)
{
    return isUtf8Text(property.name) && isUtf8Text(property.label) &&
           (!property.binary || isUtf8Text(property.binary->mediaType)) &&
           std::all_of(property.components.begin(), property.components.end(),
                       [](const std::string& text) { return isUtf8Text(text); });
}

/// Checks that the whole card is that of the person: both readers find the same numbers.
void requireWholeCard(std::string_view card, const dunmora::Person& person)
{
    const auto properties = dunmora::readProperties(card, CardReader::Text::Bytes);
    require(properties.has_value(), "a person has no whole card");
    const auto phones = person.phones.value_or(dunmora::PhoneList());
    std::size_t numbers = 0;
    for (const auto& property : *properties) {
        require(hasOnlyUtf8(property), "a text of a whole card is not UTF-8");
        require(property.binary.has_value() != !property.components.empty(),
                "a property has both texts and bytes, or neither");
        if (property.name == "TEL" && !property.binary) {
            require(numbers < phones.size() &&
                        property.components == std::vector{std::string(phones[numbers].value)},
                    "a whole card has other numbers than the person");
        }
        numbers += property.name == "TEL" ? 1 : 0;
    }
    require(numbers == phones.size(), "a whole card lacks a number of the person");
}

/// Checks that the line ends are the same whatever the processor can do.
void requireSameLineEnds(std::string_view text)
{
    for (std::size_t position = 0; position < text.size(); ++position) {
        const auto ours = dunmora::findLineEnd(text, position);
        const auto portable = dunmora::findLineEndByWords(text, position);
        require(ours.offset == portable.offset, "a line end depends on the processor");
        require(ours.isPlain == portable.isPlain, "a line is plain on some processors only");
        position = ours.offset;
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

    requireSameLineEnds(text);
    const auto difference = differenceOfMethods(text);
    require(difference.empty(), difference.c_str());
    requireOrderedRanges(cards, text.size());
    for (const auto& person : cards.people) {
        require(hasOnlyUtf8(person), "a text is not UTF-8");
    }
    for (std::size_t i = 0; i < cards.ranges.size(); ++i) {
        const auto& range = cards.ranges[i];
        const auto card = std::string_view(text).substr(range.begin, range.end - range.begin);
        requireOneBeginLine(card);
        requireWholeCard(card, cards.people[i]);
    }
    // A card without END before a removed one would extend into the text after it.
    constexpr std::size_t kRemovals = 8;
    for (std::size_t i = 0; cards.skipped.empty() && i < cards.people.size() && i < kRemovals;
         ++i) {
        requireOthersStay(text, cards, i);
    }
    return 0;
}
