#include "review/KeptMarks.h"

#include "engine/ContactsParser.h"
#include "review/CheckedPeople.h"
#include "review/GroupWarnings.h"
#include "review/ProposedMarks.h"
#include "text/TextHash.h"

#include <algorithm>
#include <cstddef>
#include <unordered_map>

namespace dunmora {

/// Finds groups by their smallest uid: two readings may list a group in different orders, but that
/// uid is the same. Almost always they list the same groups in the same order, too, so that the
/// next group is tried before a table is built.
class KeptMarks::GroupSearch final {
public:
    explicit GroupSearch(const KeptMarks& kept) : groups_(kept.groups_)
    {
        smallestUids_.reserve(groups_.size());
        for (const auto& group : groups_) {
            smallestUids_.push_back(kept.smallestUidOf(group));
        }
    }

    /// The group with this smallest uid; null if there is none.
    const Group* find(std::string_view smallestUid)
    {
        if (next_ < groups_.size() && smallestUids_[next_] == smallestUid) {
            return &groups_[next_++];
        }
        if (groupOfUid_.empty()) {
            buildTable();
        }
        const auto found = groupOfUid_.find(smallestUid);
        if (found == groupOfUid_.end()) {
            return nullptr;
        }
        next_ = found->second + 1;
        return &groups_[found->second];
    }

private:
    void buildTable()
    {
        groupOfUid_.reserve(groups_.size());
        for (std::size_t group = 0; group < groups_.size(); ++group) {
            groupOfUid_.emplace(smallestUids_[group], group);
        }
    }

    const std::vector<Group>& groups_;
    std::vector<std::string_view> smallestUids_;
    std::size_t next_ = 0;
    std::unordered_map<std::string_view, std::size_t, TextHash> groupOfUid_;
};

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
        group.firstCopy = copies_.size();
        group.size = rows.size;
        for (auto row = rows.first; row < rows.first + rows.size; ++row) {
            uids_ += engine.duplicates()[row];
            copies_.push_back({uids_.size(), cardHash(row), isCheckedRow(engine, row)});
        }
        count_ += group.changed;
        groups_.push_back(group);
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
    const std::span<const std::string> uids = engine.duplicates();
    GroupSearch search(*this);
    // Reused, so that a group costs no allocation.
    std::vector<std::size_t> rows;
    for (std::size_t number = 0; number < groups.groupCount(); ++number) {
        const auto range = groups.rowsOfGroup(number);
        const auto members = uids.subspan(range.first, range.size);
        const auto* const group = search.find(*std::min_element(members.begin(), members.end()));
        if (group == nullptr || group->size != range.size ||
            !findRows(*group, uids, range.first, rows)) {
            continue;
        }
        const auto copies = std::span(copies_).subspan(group->firstCopy, group->size);
        const auto isSame = [&](const Copy& copy, std::size_t row) {
            return copy.card.has_value() && copy.card == cardHash(row);
        };
        if (!std::equal(copies.begin(), copies.end(), rows.begin(), isSame)) {
            continue;
        }
        for (std::size_t i = 0; i < rows.size(); ++i) {
            auto* const contact = engine.recordInRow(rows[i]);
            if (contact != nullptr && contact->isChecked() != copies[i].isChecked) {
                contact->setObject(copies[i].isChecked, kContactCheck);
                restored.rows.push_back(rows[i]);
            }
        }
        restored.kept += group->changed;
        restored.lost -= group->changed;
    }
    std::sort(restored.rows.begin(), restored.rows.end());
    return restored;
}

std::string_view KeptMarks::uidOf(std::size_t copy) const
{
    const auto begin = copy == 0 ? 0 : copies_[copy - 1].uidEnd;
    return std::string_view(uids_).substr(begin, copies_[copy].uidEnd - begin);
}

std::string_view KeptMarks::smallestUidOf(const Group& group) const
{
    auto smallest = uidOf(group.firstCopy);
    for (auto copy = group.firstCopy + 1; copy < group.firstCopy + group.size; ++copy) {
        smallest = std::min(smallest, uidOf(copy));
    }
    return smallest;
}

bool KeptMarks::findRows(const Group& group, std::span<const std::string> uids,
                         std::size_t firstRow, std::vector<std::size_t>& rows) const
{
    rows.clear();
    for (std::size_t i = 0; i < group.size && uids[firstRow + i] == uidOf(group.firstCopy + i);
         ++i) {
        rows.push_back(firstRow + i);
    }
    if (rows.size() == group.size) {
        return true;
    }
    std::unordered_map<std::string_view, std::size_t, TextHash> rowOf;
    for (auto row = firstRow; row < firstRow + group.size; ++row) {
        rowOf.emplace(uids[row], row);
    }
    for (auto i = rows.size(); i < group.size; ++i) {
        const auto found = rowOf.find(uidOf(group.firstCopy + i));
        if (found == rowOf.end()) {
            return false;
        }
        rows.push_back(found->second);
    }
    return true;
}

}  // namespace dunmora
