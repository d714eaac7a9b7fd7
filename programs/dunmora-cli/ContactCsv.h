#pragma once

#include "review/DuplicateGroups.h"

#include <span>
#include <string>

namespace dunmora {

class UniqueProperties;

/// Whether texts are written unchanged, for other programs, or made safe for a terminal.
enum class CsvTexts { AsTheyAre, Printable };

/// The review as CSV (RFC 4180): a header, then one record per person. Groups count from 1; times
/// are in UTC.
std::string contactCsv(const ContactsParser& engine, std::span<const DuplicateGroup> groups,
                       const UniqueProperties& cards, CsvTexts texts);

}  // namespace dunmora
