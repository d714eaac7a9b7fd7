#include "review/ProposedMarks.h"

#include "engine/ContactsParser.h"
#include "review/CheckedPeople.h"

#include <algorithm>

namespace dunmora {

namespace {

std::vector<bool> marksOfRows(const ContactsParser& engine)
{
    std::vector<bool> marks(engine.duplicates().size());
    for (std::size_t row = 0; row < marks.size(); ++row) {
        marks[row] = isCheckedRow(engine, row);
    }
    return marks;
}

}  // namespace

void ProposedMarks::clear()
{
    *this = {};
}

void ProposedMarks::searched(const ContactsParser& engine)
{
    searched_ = marksOfRows(engine);
    proposed_ = searched_;
    before_ = searched_;
    isChanged_.assign(searched_.size(), false);
    changed_ = 0;
}

void ProposedMarks::deleted(const ContactsParser& engine)
{
    const auto& rows = engine.duplicates();
    proposed_.clear();
    std::size_t position = 0;
    // The groups still list the people who were removed.
    for (const auto& found : engine.contactGroups()) {
        if (!found.value.areSeveral()) {
            continue;
        }
        const auto first = proposed_.size();
        for (const auto uid : found.value) {
            const auto row = proposed_.size();
            if (row < rows.size() && rows[row] == uid) {
                proposed_.push_back(position < searched_.size() && searched_[position]);
            }
            ++position;
        }
        const auto left = proposed_.begin() + static_cast<std::ptrdiff_t>(first);
        const auto count = proposed_.size() - first;
        if (count > 0 && count < found.value.size() &&
            std::find(left, proposed_.end(), false) == proposed_.end()) {
            proposed_[first] = false;
        }
    }
    before_ = marksOfRows(engine);
    isChanged_.assign(before_.size(), false);
    changed_ = 0;
}

void ProposedMarks::rowsEdited(const ContactsParser& engine, std::span<const std::size_t> rows)
{
    for (const auto row : rows) {
        if (row < before_.size()) {
            const bool isChanged = isCheckedRow(engine, row) != before_[row];
            changed_ += isChanged ? 1 : 0;
            changed_ -= isChanged_[row] ? 1 : 0;
            isChanged_[row] = isChanged;
        }
    }
}

std::vector<std::size_t> ProposedMarks::restore(ContactsParser& engine) const
{
    std::vector<std::size_t> changed;
    for (std::size_t row = 0; row < proposed_.size(); ++row) {
        auto* const contact = engine.recordInRow(row);
        if (contact != nullptr && contact->isChecked() != proposed_[row]) {
            contact->setObject(static_cast<bool>(proposed_[row]), kContactCheck);
            changed.push_back(row);
        }
    }
    return changed;
}

}  // namespace dunmora
