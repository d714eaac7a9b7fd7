#include "review/GroupWarnings.h"

#include "engine/ContactsParser.h"
#include "review/CheckedPeople.h"
#include "review/DuplicateGroups.h"

namespace dunmora {

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
    checkedRows_ = 0;
    checkedElsewhere_ = 0;
    sharingOnlyEmptyFields_ = 0;
}

void GroupWarnings::update(const ContactsParser& engine)
{
    clear();
    groupOfRow_.reserve(engine.duplicates().size());
    visitDuplicateGroups(engine, [&](const DuplicateGroup& group) {
        sharingOnlyEmptyFields_ += group.sharesOnlyEmptyFields ? group.uids.size() : 0;
        groupOfRow_.insert(groupOfRow_.end(), group.uids.size(),
                           static_cast<std::uint32_t>(groups_.size()));
        groups_.push_back({group.firstRow, group.uids.size(), 0, group.sharesOnlyEmptyFields});
    });
    isChecked_.resize(groupOfRow_.size());
    for (std::size_t row = 0; row < isChecked_.size(); ++row) {
        setChecked(row, isCheckedRow(engine, row));
    }
    checkedElsewhere_ = countOfChecked(engine) - checkedRows_;
}

void GroupWarnings::rowsEdited(const ContactsParser& engine, std::span<const std::size_t> rows)
{
    for (const auto row : rows) {
        if (row < isChecked_.size() && row < engine.duplicates().size()) {
            setChecked(row, isCheckedRow(engine, row));
        }
    }
}

std::size_t GroupWarnings::checkedPeopleWhoShareOnlyEmptyFields() const
{
    std::size_t people = 0;
    for (const auto& group : groups_) {
        people += group.sharesOnlyEmptyFields ? group.checked : 0;
    }
    return people;
}

std::optional<std::size_t> GroupWarnings::groupOfRow(std::size_t row) const
{
    return row < groupOfRow_.size() ? std::optional<std::size_t>(groupOfRow_[row]) : std::nullopt;
}

RowRange GroupWarnings::rowsOfGroup(std::size_t group) const
{
    return {groups_[group].firstRow, groups_[group].size};
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
    checkedRows_ = checked ? checkedRows_ + 1 : checkedRows_ - 1;
    losing_ += group.losesEveryCopy() ? 1 : 0;
}

}  // namespace dunmora
