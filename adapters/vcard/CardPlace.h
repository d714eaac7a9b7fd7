#pragma once

#include "adapters/vcard/CardFile.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace dunmora {

/// Where a person's card is, and what becomes of it. 16 bytes, because a book may have a million
/// people.
struct CardPlace {
    /// The place of a card with these bytes in the file with this number.
    /// Errors: PlatformError when a number needs more than 32 bits. No card of a book that is not
    /// refused for its size begins so late.
    CardPlace(std::size_t fileNumber, const CardBytes& bytes);

    /// The bytes of the card, line end included.
    ByteRange range() const { return {begin, std::size_t{begin} + size}; }
    /// These bytes of the file, and those without the line end.
    std::string_view linesIn(std::string_view bytes) const { return bytes.substr(begin, size); }
    std::string_view cardIn(std::string_view bytes) const
    {
        return bytes.substr(begin, size - lineEndSize);
    }

    /// The number of the file, counted from 0.
    std::uint32_t file;
    /// In bytes; see CardBytes.
    std::uint32_t begin;
    std::uint32_t size;
    std::uint16_t lineEndSize;
    /// Whether the next save is to remove the card.
    bool isPending = false;
    /// Whether a save has removed the card.
    bool isRemoved = false;
};

static_assert(sizeof(CardPlace) == 16);

}  // namespace dunmora
