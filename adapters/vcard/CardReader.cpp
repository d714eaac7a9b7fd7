#include "adapters/vcard/CardReader.h"

#include "adapters/vcard/CardScanner.h"

namespace dunmora {

void CardReader::read(std::string_view text, Text kind, Cards& cards)
{
    // Reserves for an estimated number of cards, so that the lists are not copied while they grow;
    // with a folder of small files they grow by themselves.
    constexpr std::size_t kUsualCardSize = 256;
    const auto expected = cards.people.size() + text.size() / kUsualCardSize;
    if (expected > 2 * cards.people.capacity()) {
        cards.people.reserve(expected);
        cards.ranges.reserve(expected);
    }
    CardScanner scanner(text, kind, CardScanner::Properties::OfPerson, memory_);
    while (scanner.next()) {
        if (scanner.card().isGroup()) {
            cards.groups.push_back(scanner.range());
        } else {
            cards.people.push_back(scanner.card().person());
            cards.ranges.push_back(scanner.range());
        }
    }
    cards.skipped.insert(cards.skipped.end(), scanner.skipped().begin(), scanner.skipped().end());
}

}  // namespace dunmora
