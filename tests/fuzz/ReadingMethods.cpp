#include "tests/fuzz/ReadingMethods.h"

#include "adapters/vcard/CardProperties.h"
#include "adapters/vcard/CardReader.h"
#include "adapters/vcard/CardScanner.h"
#include "adapters/vcard/PiecewiseReading.h"
#include "tests/fuzz/PersonChecks.h"

#include <algorithm>
#include <cstddef>
#include <memory_resource>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora::test {

namespace {

/// Reads every line the way that is meant for unusual ones.
CardReader::Cards readLineByLine(std::string_view text, CardReader::Text kind,
                                 std::pmr::memory_resource& memory)
{
    CardReader::Cards cards;
    CardScanner scanner(text, kind, CardScanner::Properties::OfPerson, memory,
                        CardScanner::OrdinaryLines::LikeOthers);
    scanner.readAll(cards);
    cards.skipped = scanner.skipped();
    return cards;
}

CardReader::Cards readInPieces(std::string_view text, CardReader::Text kind,
                               const std::vector<std::size_t>& ends,
                               PiecewiseReading::Memories& memories)
{
    CardReader::Cards cards;
    // Starting others takes longer than most texts.
    constexpr std::size_t kThreads = 1;
    PiecewiseReading(text, kind, ends, memories, cards).run(kThreads);
    return cards;
}

/// Ends in unlikely places, such as the middle of a line, but the same ones each time.
std::vector<std::size_t> oddEnds(std::string_view text)
{
    constexpr std::size_t kPieces = 5;
    std::vector<std::size_t> ends;
    for (std::size_t piece = 1; piece < kPieces; ++piece) {
        ends.push_back(text.size() / kPieces * piece);
    }
    ends.push_back(text.size());
    return ends;
}

bool sameRanges(const std::vector<CardRange>& a, const std::vector<CardRange>& b)
{
    return std::equal(
        a.begin(), a.end(), b.begin(), b.end(), [](const CardRange& x, const CardRange& y) {
            return x.begin == y.begin && x.end == y.end && x.lineEndSize == y.lineEndSize;
        });
}

std::string difference(const CardReader::Cards& a, const CardReader::Cards& b)
{
    if (!sameRanges(a.ranges, b.ranges)) {
        return "other ranges";
    }
    if (!sameRanges(a.groups, b.groups)) {
        return "other groups";
    }
    if (a.skipped != b.skipped) {
        return "other skipped cards";
    }
    if (a.people.size() != b.people.size()) {
        return "another number of people";
    }
    for (std::size_t i = 0; i < a.people.size(); ++i) {
        if (a.people[i].uid != b.people[i].uid || !haveSameFields(a.people[i], b.people[i])) {
            return "another person " + std::to_string(i);
        }
    }
    return {};
}

/// The properties of every card with all their parts, as text.
std::vector<std::string> wholeCards(std::string_view text, CardReader::Text kind,
                                    CardScanner::OrdinaryLines ordinaryLines)
{
    std::pmr::monotonic_buffer_resource memory;
    std::vector<std::string> cards;
    CardScanner scanner(text, kind, CardScanner::Properties::All, memory, ordinaryLines);
    while (scanner.next()) {
        auto& properties = cards.emplace_back();
        for (const auto& raw : scanner.card().properties()) {
            const auto& property = scanner.card().parse(raw);
            for (const auto part :
                 {scanner.card().lines(raw), property.group, property.name, property.parameters,
                  property.encoding.charset, scanner.card().textOf(property)}) {
                properties += std::to_string(part.size()) + ":";
                properties += part;
            }
            properties += std::to_string(int(property.kind) * 10 + int(property.encoding.transfer));
        }
    }
    return cards;
}

/// Whether reading only the properties with these names gives the same ones as reading all.
bool areReadAlike(std::span<const std::string> names, std::string_view text, CardReader::Text kind)
{
    auto expected = readProperties(text, kind);
    if (expected) {
        std::erase_if(*expected, [&](const CardProperty& property) {
            return std::find(names.begin(), names.end(), property.name) == names.end();
        });
    }
    return readPropertiesNamed(names, text, kind) == expected;
}

}  // namespace

std::string differenceOfMethods(std::string_view text)
{
    for (const auto kind : {CardReader::Text::Bytes, CardReader::Text::Utf8}) {
        CardReader reader;
        CardReader::Cards cards;
        reader.read(text, kind, cards);
        std::pmr::monotonic_buffer_resource memory;
        if (auto found = difference(cards, readLineByLine(text, kind, memory)); !found.empty()) {
            return found + " when every line is read like the unusual ones";
        }
        PiecewiseReading::Memories memories;
        for (const auto& ends : {pieceEnds(text, 1), oddEnds(text)}) {
            if (auto found = difference(cards, readInPieces(text, kind, ends, memories));
                !found.empty()) {
                return found + " when the text is read in pieces";
            }
        }
        if (wholeCards(text, kind, CardScanner::OrdinaryLines::InOneStep) !=
            wholeCards(text, kind, CardScanner::OrdinaryLines::LikeOthers)) {
            return "other whole cards when every line is read like the unusual ones";
        }
        const std::vector<std::string> someNames{"AGENT", "FN", "NOTE"};
        const std::vector<std::string> others{"N", "PHOTO", "TEL"};
        if (!areReadAlike(someNames, text, kind) || !areReadAlike(others, text, kind)) {
            return "other properties when only those with some names are read";
        }
    }
    return {};
}

}  // namespace dunmora::test
