#pragma once

#include "adapters/posix/FileBytes.h"
#include "adapters/posix/Pieces.h"
#include "adapters/vcard/CardReader.h"
#include "adapters/vcard/TextDecoding.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

/// A part of a file, in bytes.
struct ByteRange {
    std::size_t begin;
    std::size_t end;
};

/// The bytes of a card in its file.
struct CardBytes {
    /// With the line end.
    ByteRange range;
    /// The size of the line end; 0 when there is none. The start of one of more than 65,535 bytes
    /// counts as part of the card.
    std::uint16_t lineEndSize;
};

/// A file of vCards as it was read, and the ranges that deletions have removed from it since.
/// Thread: as a standard container. Errors: none.
class CardFile final {
public:
    /// Ranges in ascending order that do not overlap.
    using Ranges = std::vector<ByteRange>;

    CardFile(std::filesystem::path name, FileBytes bytes);

    /// All names under which the book reaches the file; the first one is for messages.
    const std::vector<std::filesystem::path>& names() const { return names_; }
    void addName(std::filesystem::path name) { names_.push_back(std::move(name)); }

    FileEncoding encoding() const { return encoding_; }
    /// The content as it was read.
    std::string_view bytes() const { return bytes_.view(); }
    /// The content as it was read; a UTF-16 file as UTF-8.
    std::string_view text() const;

    /// How the text is encoded.
    CardReader::Text textKind() const;

    /// Reads the cards of the file, as `CardReader::read`.
    void read(CardReader& reader, CardReader::Cards& cards) const;
    /// The text in these bytes, which begin and end with characters. `converted` holds the text of
    /// a UTF-16 file.
    std::string_view textIn(const ByteRange& range, std::string& converted) const;

    /// The content as it was read, without these ranges.
    Pieces without(const Ranges& ranges) const;
    /// Whether these pieces of the file consist of white space and byte-order marks only.
    bool areBlank(const Pieces& pieces) const;

    /// What deletions have removed from the file on disk.
    const Ranges& removed() const { return removed_; }
    void setRemoved(Ranges ranges) { removed_ = std::move(ranges); }

private:
    std::vector<std::filesystem::path> names_;
    FileBytes bytes_;
    FileEncoding encoding_;
    // The text of a UTF-16 file.
    std::string decoded_;
    Ranges removed_;
};

/// Finds the bytes of cards that have been read from a file, which must stay alive.
/// Thread: one at a time. Errors: none.
class CardBytesFinder final {
public:
    explicit CardBytesFinder(const CardFile& file) : file_(file) {}

    /// The bytes of the card. Each card must be behind the one before.
    CardBytes bytesOf(const CardRange& card);

private:
    std::size_t byteAt(std::size_t position);
    std::size_t sizeOf(std::string_view passed) const;

    const CardFile& file_;
    // The same place in the text and in the file.
    std::size_t textPosition_ = 0;
    std::size_t bytePosition_ = 0;
};

/// Whether the text consists of white space and byte-order marks only.
bool isBlankContent(std::string_view text);

}  // namespace dunmora
