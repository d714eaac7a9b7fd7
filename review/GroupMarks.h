#pragma once

#include <cstddef>
#include <vector>

namespace dunmora {

class ContactsParser;
class GroupWarnings;

// Changes of the check marks of whole groups. Each returns the rows whose marks have changed, in
// ascending order; `warnings` is out of date until its `rowsEdited` is called with them.
// Thread: as marking the engine's collections. Errors: none.

/// Unchecks this row and checks every other copy in its group.
std::vector<std::size_t> keepOnly(ContactsParser& engine, const GroupWarnings& warnings,
                                  std::size_t row);

/// Unchecks every copy in the row's group.
std::vector<std::size_t> keepAll(ContactsParser& engine, const GroupWarnings& warnings,
                                 std::size_t row);

/// Unchecks everyone in groups that share only empty fields.
std::vector<std::size_t> uncheckSharingOnlyEmptyFields(ContactsParser& engine,
                                                       const GroupWarnings& warnings);

}  // namespace dunmora
