#include "adapters/vcard/CardFile.h"

#include "text/Ascii.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace dunmora {

CardFile::CardFile(std::filesystem::path name, FileBytes bytes)
    : bytes_(std::move(bytes)), encoding_(detectEncoding(bytes_.view()))
{
    names_.push_back(std::move(name));
    if (encoding_ != FileEncoding::Bytes) {
        decoded_ = utf16ToUtf8(bytes_.view(), encoding_);
    }
}

std::string_view CardFile::text() const
{
    return encoding_ == FileEncoding::Bytes ? bytes_.view() : std::string_view(decoded_);
}

CardReader::Text CardFile::textKind() const
{
    return encoding_ == FileEncoding::Bytes ? CardReader::Text::Bytes : CardReader::Text::Utf8;
}

void CardFile::read(CardReader& reader, CardReader::Cards& cards) const
{
    reader.read(text(), textKind(), cards);
}

std::string_view CardFile::textIn(const ByteRange& range, std::string& converted) const
{
    const auto part = bytes().substr(range.begin, range.end - range.begin);
    if (encoding_ == FileEncoding::Bytes) {
        return part;
    }
    converted = utf16ToUtf8(part, encoding_);
    return converted;
}

Pieces CardFile::without(const Ranges& ranges) const
{
    Pieces pieces;
    std::size_t position = 0;
    for (const auto& range : ranges) {
        if (range.begin > position) {
            pieces.push_back(bytes().substr(position, range.begin - position));
        }
        position = range.end;
    }
    if (position < bytes().size()) {
        pieces.push_back(bytes().substr(position));
    }
    return pieces;
}

bool CardFile::areBlank(const Pieces& pieces) const
{
    return std::all_of(pieces.begin(), pieces.end(), [&](std::string_view piece) {
        // utf16ToUtf8 drops a last odd byte, which is content all the same.
        return encoding_ == FileEncoding::Bytes
                   ? isBlankContent(piece)
                   : piece.size() % 2 == 0 && isBlankContent(utf16ToUtf8(piece, encoding_));
    });
}

CardBytes CardBytesFinder::bytesOf(const CardRange& card)
{
    const auto begin = byteAt(card.begin);
    const auto end = byteAt(card.end);
    const auto lineEndSize =
        sizeOf(file_.text().substr(card.end - card.lineEndSize, card.lineEndSize));
    constexpr std::size_t kMaxSize = std::numeric_limits<std::uint16_t>::max();
    return {{begin, end}, static_cast<std::uint16_t>(std::min(lineEndSize, kMaxSize))};
}

/// Where this position of the text is in the file. Counting on from the last position keeps the
/// whole file linear.
std::size_t CardBytesFinder::byteAt(std::size_t position)
{
    bytePosition_ += sizeOf(file_.text().substr(textPosition_, position - textPosition_));
    textPosition_ = position;
    return bytePosition_;
}

std::size_t CardBytesFinder::sizeOf(std::string_view passed) const
{
    return file_.encoding() == FileEncoding::Bytes ? passed.size() : utf16Size(passed);
}

bool isBlankContent(std::string_view text)
{
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    while (true) {
        text.remove_prefix(std::min(text.find_first_not_of(kWhiteSpace), text.size()));
        if (!text.starts_with(kByteOrderMark)) {
            return text.empty();
        }
        text.remove_prefix(kByteOrderMark.size());
    }
}

}  // namespace dunmora
