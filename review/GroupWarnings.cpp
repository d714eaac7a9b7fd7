#include "review/GroupWarnings.h"

#include "engine/ContactsParser.h"
#include "review/DuplicateGroups.h"

#include <string>

namespace dunmora {

namespace {

bool isChecked(const ContactRecord* contact)
{
    return contact != nullptr && contact->isChecked();
}

}  // namespace

bool GroupWarnings::Group::has(GroupWarning warning) const
{
    return warning == GroupWarning::LosesEveryCopy ? losesEveryCopy() : sharesOnlyEmptyFields;
}

void GroupWarnings::clear()
{
    groups_.clear();
    groupOfRow_.clear();
    isChecked_.clear();
    losing_ = 0;
    sharingOnlyEmptyFields_ = 0;
}

void GroupWarnings::update(const ContactsParser& engine)
{
    clear();
    const auto records = recordsOfRows(engine);
    groupOfRow_.reserve(records.size());
    isChecked_.resize(records.size());
    const auto keyOfNobody = keyOfEmptyFields();
    for (const auto& group : duplicateGroups(engine, records)) {
        // Whoever is left alone by a deletion shares nothing with anybody.
        const auto sharesOnlyEmptyFields = group.uids.size() > 1 && group.key == keyOfNobody;
        sharingOnlyEmptyFields_ += sharesOnlyEmptyFields ? group.uids.size() : 0;
        groupOfRow_.insert(groupOfRow_.end(), group.uids.size(),
                           static_cast<std::uint32_t>(groups_.size()));
        groups_.push_back(
            {groupOfRow_.size() - group.uids.size(), group.uids.size(), 0, sharesOnlyEmptyFields});
    }
    for (std::size_t row = 0; row < records.size(); ++row) {
        setChecked(row, isChecked(records[row]));
    }
}

void GroupWarnings::rowsEdited(const ContactsParser& engine, std::span<const std::size_t> rows)
{
    const auto& uids = engine.duplicates();
    for (const auto row : rows) {
        if (row < isChecked_.size() && row < uids.size()) {
            setChecked(row, isChecked(engine.contacts().find(uids[row])));
        }
    }
}

std::optional<std::size_t> GroupWarnings::groupOfRow(std::size_t row) const
{
    return row < groupOfRow_.size() ? std::optional<std::size_t>(groupOfRow_[row]) : std::nullopt;
}

bool GroupWarnings::hasWarning(std::size_t row, GroupWarning warning) const
{
    const auto group = groupOfRow(row);
    return group && groups_[*group].has(warning);
}

std::optional<std::size_t> GroupWarnings::nextRow(GroupWarning warning,
                                                  std::optional<std::size_t> row) const
{
    const auto own = row ? groupOfRow(*row) : std::nullopt;
    const std::size_t first = own ? *own + 1 : 0;
    for (std::size_t i = 0; i < groups_.size(); ++i) {
        const auto& group = groups_[(first + i) % groups_.size()];
        if (group.has(warning)) {
            return group.firstRow;
        }
    }
    return std::nullopt;
}

std::vector<std::size_t> GroupWarnings::firstRowsThatLoseEveryCopy() const
{
    std::vector<std::size_t> rows;
    for (const auto& group : groups_) {
        if (group.losesEveryCopy()) {
            rows.push_back(group.firstRow);
        }
    }
    return rows;
}

void GroupWarnings::setChecked(std::size_t row, bool checked)
{
    if (isChecked_[row] == checked) {
        return;
    }
    isChecked_[row] = checked;
    auto& group = groups_[groupOfRow_[row]];
    losing_ -= group.losesEveryCopy() ? 1 : 0;
    group.checked = checked ? group.checked + 1 : group.checked - 1;
    losing_ += group.losesEveryCopy() ? 1 : 0;
}

}  // namespace dunmora
