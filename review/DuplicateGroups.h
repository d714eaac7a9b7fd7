#pragma once

#include "engine/ContactGroups.h"

#include <cstddef>
#include <functional>
#include <span>
#include <string>
#include <vector>

namespace dunmora {

class ContactsParser;

/// A group of the review: the people who share a match key. Views into the engine's groups and
/// rows, valid until the next job.
struct DuplicateGroup {
    ContactGroups::Group found;
    /// In the order of the rows; people removed by a deletion are no longer listed.
    std::span<const std::string> uids;
    /// The row of the first uid.
    std::size_t firstRow = 0;
    /// Several people in whose cards every field compared is blank (`showsNothing`): they have no
    /// text in common. True for every group when the search compared no field.
    bool sharesOnlyEmptyFields = false;

    std::string key() const { return found.key(); }
};

/// The groups of the engine's rows, in their order, as the last search found them, whatever the
/// preferences are now. Thread: as reading the engine's collections.
std::vector<DuplicateGroup> duplicateGroups(const ContactsParser& engine);

/// Calls `visit` with each of them, without a list of all, which is large in a large book.
/// Thread: as `duplicateGroups`. Errors: those of `visit`.
void visitDuplicateGroups(const ContactsParser& engine,
                          const std::function<void(const DuplicateGroup&)>& visit);

}  // namespace dunmora
