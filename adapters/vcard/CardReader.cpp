#include "adapters/vcard/CardReader.h"

#include "adapters/vcard/CardScanner.h"
#include "adapters/vcard/PiecewiseReading.h"
#include "text/SideBySide.h"

namespace dunmora {

void CardReader::read(std::string_view text, Text kind, Cards& cards)
{
    if (text.size() > method_.pieceSize && readInPieces(text, kind, cards)) {
        return;
    }
    // Reserves for an estimated number of cards, so that the lists are not copied while they grow;
    // with a folder of small files they grow by themselves.
    constexpr std::size_t kUsualCardSize = 256;
    const auto expected = cards.people.size() + text.size() / kUsualCardSize;
    if (expected > 2 * cards.people.capacity()) {
        cards.people.reserve(expected);
        cards.ranges.reserve(expected);
        cards.uidHashes.reserve(cards.hashesUids ? expected : 0);
    }
    CardScanner scanner(text, kind, CardScanner::Properties::OfPerson, memory_);
    scanner.readAll(cards);
    cards.skipped.insert(cards.skipped.end(), scanner.skipped().begin(), scanner.skipped().end());
}

/// Returns false, and reads nothing, when one thread is as good.
bool CardReader::readInPieces(std::string_view text, Text kind, Cards& cards)
{
    const auto threads = method_.threads == 0 ? processors() : method_.threads;
    if (threads == 1) {
        return false;
    }
    const auto ends = pieceEnds(text, method_.pieceSize);
    if (ends.size() == 1) {
        return false;
    }
    PiecewiseReading(text, kind, ends, pieceMemories_, cards).run(threads);
    return true;
}

}  // namespace dunmora
