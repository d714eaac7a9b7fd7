#include "programs/dunmora-cli/DeletionTable.h"

#include "engine/ContactsParser.h"
#include "review/DuplicateGroups.h"
#include "text/TextHash.h"

#include <algorithm>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

namespace dunmora {

std::string deletionTable(const ContactsParser& engine, std::span<const std::string> uids,
                          const TableCards& cards, const TableStyle& style)
{
    std::unordered_set<std::string_view, TextHash> left(uids.begin(), uids.end());
    const auto isKept = [&](const std::string& uid) { return !left.contains(uid); };
    std::vector<std::vector<std::string>> blocks;
    for (const auto& group : duplicateGroups(engine)) {
        std::vector<std::string> block(group.uids.begin(), group.uids.end());
        const auto checked = std::stable_partition(block.begin(), block.end(), isKept);
        if (checked == block.end()) {
            continue;
        }
        std::for_each(checked, block.end(), [&](const std::string& uid) { left.erase(uid); });
        blocks.push_back(std::move(block));
    }
    std::vector<std::string> others(uids.begin(), uids.end());
    std::erase_if(others, isKept);
    if (!others.empty()) {
        blocks.push_back(std::move(others));
    }
    return contactTable(engine, {blocks.begin(), blocks.end()}, cards, style);
}

}  // namespace dunmora
