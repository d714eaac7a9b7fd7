#pragma once

#include "review/DuplicateGroups.h"

#include <span>
#include <string>

namespace dunmora {

/// Whether a text is for a program, which gets its bytes, or may be shown on a terminal.
enum class CsvTexts { AsTheyAre, Printable };

/// The review as RFC 4180 has it: a header, then a record a person; groups are counted from 1,
/// times are in UTC.
std::string contactCsv(const ContactsParser& engine, std::span<const DuplicateGroup> groups,
                       CsvTexts texts);

}  // namespace dunmora
