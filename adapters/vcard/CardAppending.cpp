#include "adapters/vcard/CardAppending.h"

#include "adapters/posix/Pieces.h"
#include "adapters/vcard/CardReader.h"
#include "adapters/vcard/ReadBack.h"
#include "platform/PlatformError.h"
#include "text/DisplayText.h"

#include <deque>
#include <functional>
#include <string>
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

/// The pieces joined. They are not copied if they are a part of `whole`.
FileBytes inOnePiece(const Pieces& pieces, std::string_view whole)
{
    // Also defined for addresses of different objects.
    const std::less<> isBefore;
    const char* end = pieces.empty() ? nullptr : pieces.front().data();
    for (const auto piece : pieces) {
        const bool isInWhole = !isBefore(piece.data(), whole.data()) &&
                               !isBefore(whole.data() + whole.size(), piece.data() + piece.size());
        if (!isInWhole || piece.data() != end) {
            return joined(pieces);
        }
        end = piece.data() + piece.size();
    }
    return pieces.empty() ? FileBytes()
                          : FileBytes::keptElsewhere({pieces.front().data(), sizeOf(pieces)});
}

/// Expects the cards up to the one with the number `end`, which are those of the file.
void expect(const CardFile& file, const CardReader::Cards& cards, std::size_t end,
            std::vector<RemainingCard>& expected)
{
    CardBytesFinder finder(file);
    for (auto i = expected.size(); i < end; ++i) {
        const auto [range, lineEndSize] = finder.bytesOf(cards.ranges[i]);
        const auto size = range.end - range.begin - lineEndSize;
        expected.push_back({file.bytes().substr(range.begin, size), &cards.people[i]});
    }
}

}  // namespace

Appendix appendixTo(const CardFile& file, const AddedCards& cards,
                    const std::vector<const AddedCards::AddedCard*>& added)
{
    Appendix appendix;
    const auto lineEnd = lineEndOf(file);
    const bool isSameEncoding = cards.encoding() == file.encoding();
    std::deque<std::string> texts;
    Pieces pieces;
    for (const auto* const card : added) {
        auto bytes = card->bytes;
        if (!isSameEncoding) {
            auto text = converted(bytes, cards.encoding(), file.encoding());
            if (!text) {
                appendix.unsuitable.push_back(card);
                continue;
            }
            bytes = texts.emplace_back(std::move(*text));
        }
        if (pieces.empty() && endsInsideALine(file.text())) {
            pieces.push_back(lineEnd);
        }
        pieces.push_back(bytes);
        pieces.push_back(isSameEncoding && !card->lineEnd.empty() ? card->lineEnd
                                                                  : std::string_view(lineEnd));
        ++appendix.people;
    }
    appendix.bytes = inOnePiece(pieces, cards.file().bytes());
    return appendix;
}

std::unique_ptr<FileReplacement> appended(LockedFile locked, const CardFile& file,
                                          const Appendix& appendix)
{
    // Read alone, so that nothing before them affects what is expected.
    const auto addedFile = cardFileOf(file.names().front(), appendix.bytes.view());
    CardReader reader;
    CardReader::Cards cards;
    file.read(reader, cards);
    const auto before = cards.people.size();
    addedFile.read(reader, cards);
    std::vector<RemainingCard> expected;
    expected.reserve(cards.people.size());
    expect(file, cards, before, expected);
    expect(addedFile, cards, cards.people.size(), expected);
    auto replacement = std::make_unique<FileReplacement>(std::move(locked),
                                                         Pieces{file.bytes(), addedFile.bytes()});
    if (cards.people.size() - before != appendix.people ||
        !isReadBack(file.names().front(), *replacement, expected)) {
        throw PlatformError(quotedPath(file.names().front()) +
                            " was not changed: with the people at its end, it would be read "
                            "differently. Correct the skipped cards in it.");
    }
    return replacement;
}

}  // namespace dunmora
