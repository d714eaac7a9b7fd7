#pragma once

#include "programs/dunmora-cli/TableStyle.h"
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
/// marks as "[x]" and "[ ]", times in local time. All text is safe to display. Empty when there are
/// no blocks.
///
/// A table that has to fit omits columns without any content. Where the rest is too wide, the uid
/// is left out, then other values are cut with an ellipsis, of a phone number the beginning, then
/// other columns are left out; match fields continue on the next line. The last line names what is
/// not shown. On a narrow terminal each value has a line of its own; nothing is cut there.
std::string contactTable(const ContactsParser& engine, const std::vector<UidSpan>& blocks,
                         const TableCards& cards, const TableStyle& style);

}  // namespace dunmora
