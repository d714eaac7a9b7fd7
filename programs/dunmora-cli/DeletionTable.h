#pragma once

#include "programs/dunmora-cli/ContactTable.h"

#include <span>
#include <string>

namespace dunmora {

class ContactsParser;

/// The table of the people with these uids, who are to be deleted, in the order of the review: in
/// each group those who are kept, then those who are checked. People in no group come last.
/// Thread: as reading the engine's collections. Errors: none.
std::string deletionTable(const ContactsParser& engine, std::span<const std::string> uids,
                          const TableCards& cards, const TableStyle& style);

}  // namespace dunmora
