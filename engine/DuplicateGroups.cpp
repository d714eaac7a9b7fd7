#include "engine/DuplicateGroups.h"

#include "engine/ContactsParser.h"
#include "engine/MatchFields.h"

#include <algorithm>
#include <cstddef>

namespace dunmora {

namespace {

std::string keyOf(const ContactsParser& engine, const std::string& uid)
{
    const auto* record = engine.contacts().find(uid);
    return record == nullptr ? std::string() : engine.keyForContact(*record);
}

}  // namespace

std::vector<DuplicateGroup> duplicateGroups(const ContactsParser& engine)
{
    // Members of a group stand next to each other, and no two groups share a key: a new key begins
    // a new group.
    const std::span<const std::string> rows = engine.duplicates();
    std::vector<DuplicateGroup> groups;
    std::size_t first = 0;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        auto key = keyOf(engine, rows[row]);
        if (groups.empty() || groups.back().key != key) {
            groups.push_back({std::move(key), {}});
            first = row;
        }
        groups.back().uids = rows.subspan(first, row - first + 1);
    }
    return groups;
}

bool losesEveryCopy(const ContactsParser& engine, const DuplicateGroup& group)
{
    return std::all_of(group.uids.begin(), group.uids.end(), [&](const std::string& uid) {
        const auto* record = engine.contacts().find(uid);
        return record != nullptr && record->isChecked();
    });
}

bool sharesOnlyEmptyFields(const std::string& key)
{
    const auto& settings = Settings::settings();
    const auto chosen =
        std::count_if(kMatchFields.begin(), kMatchFields.end(),
                      [&](const MatchField& field) { return (settings.*field.isOn)(); });
    return key == std::string(static_cast<std::size_t>(chosen), '-');
}

}  // namespace dunmora
