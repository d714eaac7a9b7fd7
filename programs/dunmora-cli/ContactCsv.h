#pragma once

#include "review/DuplicateGroups.h"

#include <span>

namespace dunmora {

class TextPieces;
class UniqueProperties;

/// Whether texts are written unchanged, for other programs, or made safe for a terminal.
enum class CsvTexts { AsTheyAre, Printable };

/// Prints the review as CSV (RFC 4180): a header, then one record per person. Groups count from 1;
/// times are in UTC. Errors: those of `out`.
void printContactCsv(TextPieces& out, const ContactsParser& engine,
                     std::span<const DuplicateGroup> groups, const UniqueProperties& cards,
                     CsvTexts texts);

}  // namespace dunmora
