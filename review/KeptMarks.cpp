#include "review/KeptMarks.h"

#include "engine/ContactsParser.h"
#include "review/CheckedPeople.h"
#include "review/GroupWarnings.h"
#include "review/ProposedMarks.h"
#include "text/TextHash.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace dunmora {

namespace {

/// The rows of the people with the uids of `copies`, in that order, among the rows of a group that
/// has as many; none when it has other members.
template <typename Copy>
std::vector<std::size_t> rowsOf(const std::vector<Copy>& copies, const ContactsParser& engine,
                                std::size_t firstRow)
{
    const auto& uids = engine.duplicates();
    std::vector<std::size_t> rows;
    rows.reserve(copies.size());
    for (std::size_t i = 0; i < copies.size() && uids[firstRow + i] == copies[i].uid; ++i) {
        rows.push_back(firstRow + i);
    }
    if (rows.size() == copies.size()) {
        return rows;
    }
    std::unordered_map<std::string_view, std::size_t, TextHash> rowOf;
    for (std::size_t row = firstRow; row < firstRow + copies.size(); ++row) {
        rowOf.emplace(uids[row], row);
    }
    for (std::size_t i = rows.size(); i < copies.size(); ++i) {
        const auto found = rowOf.find(copies[i].uid);
        if (found == rowOf.end()) {
            return {};
        }
        rows.push_back(found->second);
    }
    return rows;
}

}  // namespace

KeptMarks::KeptMarks(const ContactsParser& engine, const GroupWarnings& groups,
                     const ProposedMarks& proposal, const CardHash& cardHash)
{
    for (std::size_t number = 0; number < groups.groupCount(); ++number) {
        const auto rows = groups.rowsOfGroup(number);
        Group group;
        for (auto row = rows.first; row < rows.first + rows.size; ++row) {
            group.changed += isCheckedRow(engine, row) != proposal.isChecked(row) ? 1 : 0;
        }
        if (group.changed == 0) {
            continue;
        }
        group.copies.reserve(rows.size);
        for (auto row = rows.first; row < rows.first + rows.size; ++row) {
            group.copies.push_back(
                {engine.duplicates()[row], cardHash(row), isCheckedRow(engine, row)});
        }
        count_ += group.changed;
        groups_.push_back(std::move(group));
    }
}

KeptMarks::Restored KeptMarks::restore(ContactsParser& engine, const GroupWarnings& groups,
                                       const CardHash& cardHash) const
{
    Restored restored;
    restored.lost = count_;
    if (groups_.empty()) {
        return restored;
    }
    // Two readings may list a group in different orders, but its smallest uid is the same.
    std::unordered_map<std::string_view, const Group*, TextHash> groupOfUid;
    for (const auto& group : groups_) {
        const auto smallest = std::min_element(
            group.copies.begin(), group.copies.end(),
            [](const Copy& one, const Copy& other) { return one.uid < other.uid; });
        groupOfUid.emplace(smallest->uid, &group);
    }
    const auto& uids = engine.duplicates();
    for (std::size_t number = 0; number < groups.groupCount(); ++number) {
        const auto range = groups.rowsOfGroup(number);
        const auto begin = uids.begin() + static_cast<std::ptrdiff_t>(range.first);
        const auto found = groupOfUid.find(
            *std::min_element(begin, begin + static_cast<std::ptrdiff_t>(range.size)));
        if (found == groupOfUid.end() || found->second->copies.size() != range.size) {
            continue;
        }
        const auto& group = *found->second;
        const auto rows = rowsOf(group.copies, engine, range.first);
        const auto isSame = [&](const Copy& copy, std::size_t row) {
            return copy.card.has_value() && copy.card == cardHash(row);
        };
        if (rows.size() != range.size ||
            !std::equal(group.copies.begin(), group.copies.end(), rows.begin(), isSame)) {
            continue;
        }
        for (std::size_t i = 0; i < rows.size(); ++i) {
            auto* const contact = engine.recordInRow(rows[i]);
            if (contact != nullptr && contact->isChecked() != group.copies[i].isChecked) {
                contact->setObject(group.copies[i].isChecked, kContactCheck);
                restored.rows.push_back(rows[i]);
            }
        }
        restored.kept += group.changed;
        restored.lost -= group.changed;
    }
    std::sort(restored.rows.begin(), restored.rows.end());
    return restored;
}

}  // namespace dunmora
