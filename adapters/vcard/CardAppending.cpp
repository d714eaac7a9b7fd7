#include "adapters/vcard/CardAppending.h"

#include "adapters/vcard/CardReader.h"
#include "adapters/vcard/ReadBack.h"
#include "platform/PlatformError.h"
#include "text/DisplayText.h"

#include <string_view>
#include <utility>

namespace dunmora {

namespace {

/// The line end that the file uses, in its encoding.
std::string lineEndOf(const CardFile& file)
{
    const auto text = file.text();
    const auto first = text.find('\n');
    const bool isPair = first != std::string_view::npos && first > 0 && text[first - 1] == '\r';
    if (first == std::string_view::npos || isPair) {
        return lineEndIn(file.encoding());
    }
    return file.encoding() == FileEncoding::Bytes ? "\n" : utf8ToUtf16("\n", file.encoding());
}

bool endsInsideALine(std::string_view text)
{
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    return !text.empty() && text != kByteOrderMark && text.back() != '\n' && text.back() != '\r';
}

void readCards(const CardFile& file, CardReader& reader, std::vector<Person>& people,
               std::vector<std::string_view>& cards)
{
    CardReader::Cards read;
    file.read(reader, read);
    people.insert(people.end(), read.people.begin(), read.people.end());
    CardBytesFinder finder(file);
    for (const auto& card : read.ranges) {
        const auto [range, lineEndSize] = finder.bytesOf(card);
        cards.push_back(file.bytes().substr(range.begin, range.end - range.begin - lineEndSize));
    }
}

}  // namespace

Appendix appendixTo(const CardFile& file, const AddedCards& cards,
                    const std::vector<const AddedCards::AddedCard*>& added)
{
    Appendix appendix;
    const auto lineEnd = lineEndOf(file);
    for (const auto* const card : added) {
        const auto bytes = converted(card->bytes, cards.encoding(), file.encoding());
        if (!bytes) {
            appendix.unsuitable.push_back(card);
            continue;
        }
        if (appendix.bytes.empty() && endsInsideALine(file.text())) {
            appendix.bytes += lineEnd;
        }
        appendix.bytes += *bytes;
        appendix.bytes += cards.encoding() == file.encoding() && !card->lineEnd.empty()
                              ? card->lineEnd
                              : std::string_view(lineEnd);
        ++appendix.people;
    }
    return appendix;
}

std::unique_ptr<FileReplacement> appended(LockedFile locked, const CardFile& file,
                                          const Appendix& appendix)
{
    // Read alone, so that nothing before them affects what is expected.
    auto lines = std::string_view(appendix.bytes);
    const auto addedFile = cardFileOf(file.names().front(), lines);
    CardReader reader;
    std::vector<Person> people;
    std::vector<std::string_view> cards;
    readCards(file, reader, people, cards);
    const auto before = people.size();
    readCards(addedFile, reader, people, cards);
    auto replacement =
        std::make_unique<FileReplacement>(std::move(locked), Pieces{file.bytes(), lines});
    std::vector<RemainingCard> expected;
    expected.reserve(people.size());
    for (std::size_t i = 0; i < people.size(); ++i) {
        expected.push_back({cards[i], &people[i]});
    }
    if (people.size() - before != appendix.people ||
        !isReadBack(file.names().front(), *replacement, expected)) {
        throw PlatformError(quotedPath(file.names().front()) +
                            " was not changed: with the people at its end, it would be read "
                            "differently. Correct the skipped cards in it.");
    }
    return replacement;
}

}  // namespace dunmora
