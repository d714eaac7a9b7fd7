#include "review/DuplicateGroups.h"

#include "engine/ContactsParser.h"
#include "text/WhiteSpace.h"

#include <cstddef>

namespace dunmora {

namespace {

/// Whether the key is that of people in whose cards none of `fields` compared fields shows
/// anything: nothing but a separator after each of them. A dash inside of a field would be one
/// more.
bool isBlankKey(std::string_view key, std::size_t fields)
{
    std::size_t separators = 0;
    for (std::size_t begin = 0; begin < key.size(); ++separators) {
        const auto end = key.find('-', begin);
        if (end == std::string_view::npos || separators == fields ||
            !showsNothing(key.substr(begin, end - begin))) {
            return false;
        }
        begin = end + 1;
    }
    return separators == fields;
}

}  // namespace

std::vector<DuplicateGroup> duplicateGroups(const ContactsParser& engine)
{
    std::vector<DuplicateGroup> groups;
    visitDuplicateGroups(engine, [&](const DuplicateGroup& group) { groups.push_back(group); });
    return groups;
}

void visitDuplicateGroups(const ContactsParser& engine,
                          const std::function<void(const DuplicateGroup&)>& visit)
{
    const std::span<const std::string> rows = engine.duplicates();
    const auto fields = engine.searchedFields().count();
    std::size_t row = 0;
    // One for all, so that a group costs no allocation.
    std::string key;
    for (const auto& found : engine.contactGroups()) {
        if (!found.value.areSeveral()) {
            continue;
        }
        // The rows are these groups without the people removed since, in the same order.
        const auto firstRow = row;
        for (auto member = found.value.begin(); member != found.value.end(); ++member) {
            if (row < rows.size() && engine.positionInRow(row) == member.position()) {
                ++row;
            }
        }
        const auto size = row - firstRow;
        if (size > 0) {
            key.clear();
            found.value.appendKey(key);
            visit({found, rows.subspan(firstRow, size), firstRow,
                   size > 1 && isBlankKey(key, fields)});
        }
    }
}

}  // namespace dunmora
