#pragma once

#include "text/TextHash.h"

#include <span>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

namespace dunmora {

class CardSource;
class ContactsParser;
class UniqueProperties;

enum class Colour { Off, On };

/// People by their uids.
using UidSpan = std::span<const std::string>;

/// What a table shows besides the contact fields.
struct TableCards {
    /// People whose check mark is followed by a star: those whose cards hold something unique.
    std::unordered_set<std::string_view, TextHash> unique;
    /// Names the people whose names are blank (`substituteName`); may be null.
    const CardSource* cards = nullptr;

    TableCards() = default;
    /// The rows of the engine in which something is unique. `source` must outlive this.
    TableCards(const ContactsParser& engine, const UniqueProperties& properties,
               const CardSource* source);
};

/// A table for a terminal: a line of titles, a line per person, an empty line between blocks; check
/// marks as "[x]" and "[ ]", times in local time. Wide cells are not truncated. All text is safe to
/// display. Empty when there are no blocks.
std::string contactTable(const ContactsParser& engine, const std::vector<UidSpan>& blocks,
                         const TableCards& cards, Colour colour);

}  // namespace dunmora
