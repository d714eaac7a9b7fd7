#include "adapters/vcard/CardReader.h"
#include "tests/fuzz/PersonChecks.h"
#include "tests/fuzz/Requirement.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace {

using dunmora::CardReader;
using dunmora::test::hasOnlyUtf8;
using dunmora::test::haveSameFields;
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
