#include "review/DuplicateGroups.h"

#include "engine/ContactsParser.h"
#include "engine/MatchKey.h"

namespace dunmora {

std::vector<DuplicateGroup> duplicateGroups(const ContactsParser& engine)
{
    const std::span<const std::string> rows = engine.duplicates();
    const auto emptyKey = matchKey(ContactRecord(), engine.searchedFields());
    std::vector<DuplicateGroup> groups;
    std::size_t row = 0;
    for (const auto& found : engine.contactGroups()) {
        if (found.value.size() < 2) {
            continue;
        }
        // The rows are these groups without the people removed since, in the same order.
        const auto firstRow = row;
        for (const auto& uid : found.value) {
            if (row < rows.size() && rows[row] == uid) {
                ++row;
            }
        }
        const auto size = row - firstRow;
        if (size > 0) {
            groups.push_back({found.key, rows.subspan(firstRow, size), firstRow,
                              size > 1 && found.key == emptyKey});
        }
    }
    return groups;
}

}  // namespace dunmora
