#pragma once

#include "programs/dunmora-cli/TableStyle.h"

#include <cstddef>
#include <vector>

namespace dunmora {

class CardSource;
class ContactRecord;
class TextPieces;

/// A person in a table.
struct TablePerson {
    const ContactRecord* record;
    /// Whether the card holds something unique: a star follows the check mark.
    bool holdsUnique = false;
};

/// The people of a table, in blocks. The records must stay as they are.
struct TablePeople {
    std::vector<TablePerson> people;
    /// The index after the last person of each block; every block has somebody.
    std::vector<std::size_t> blockEnds;
};

/// Prints a table for a terminal: a line of titles, a line per person, an empty line between
/// blocks; check marks as "[x]" and "[ ]", times in local time. All text is safe to display. Prints
/// nothing when there are no blocks. `cards` names the people whose names are blank
/// (`substituteName`); it may be null.
///
/// A table that has to fit omits columns without any content. Where the rest is too wide, the uid
/// is left out, then other values are cut with an ellipsis, of a phone number the beginning, then
/// other columns are left out; match fields continue on the next line. The last line names what is
/// not shown. On a narrow terminal each value has a line of its own; nothing is cut there.
///
/// Errors: those of `out`.
void printContactTable(TextPieces& out, const TablePeople& table, const CardSource* cards,
                       const TableStyle& style);

}  // namespace dunmora
