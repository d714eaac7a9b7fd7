#include "adapters/vcard/CardFile.h"

#include "text/Ascii.h"

#include <algorithm>
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
                   ? isBlankText(piece)
                   : piece.size() % 2 == 0 && isBlankText(utf16ToUtf8(piece, encoding_));
    });
}

bool isBlankText(std::string_view text)
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
