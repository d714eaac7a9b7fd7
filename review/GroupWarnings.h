#pragma once

#include "platform/TableView.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace dunmora {

class ContactsParser;

/// Why the user should look at a group again.
enum class GroupWarning {
    /// Every copy is checked: the person is about to be lost.
    LosesEveryCopy,
    /// The fields compared are empty: several people who have no text in common.
    SharesOnlyEmptyFields,
};

/// The groups that the user should look at again, kept up to date row by row.
///
/// Thread: the main thread, while no job runs. Errors: none.
class GroupWarnings final {
public:
    /// Forgets all groups. To be called before a job changes the rows.
    void clear();

    /// Reads the groups of the engine's last search and the check marks of all rows.
    void update(const ContactsParser& engine);

    /// Reads the check marks of these rows again. Does nothing, and does not ask the engine, after
    /// `clear`.
    void rowsEdited(const ContactsParser& engine, std::span<const std::size_t> rows);

    /// How many groups would lose every copy. Each counts as one person.
    std::size_t peopleWhoLoseEveryCopy() const { return losing_; }

    /// How many people are in groups that share only empty fields.
    std::size_t peopleWhoShareOnlyEmptyFields() const { return sharingOnlyEmptyFields_; }

    /// How many of those are checked.
    std::size_t checkedPeopleWhoShareOnlyEmptyFields() const;

    /// How many people a deletion would remove: everyone checked, in a row or not.
    std::size_t checkedPeople() const { return checkedRows_ + checkedElsewhere_; }

    /// The number of the row's group, from 0; nullopt for a row that is in no group.
    std::optional<std::size_t> groupOfRow(std::size_t row) const;

    std::size_t groupCount() const { return groups_.size(); }
    /// The rows of the group with this number, which must exist.
    RowRange rowsOfGroup(std::size_t group) const;

    bool hasWarning(std::size_t row, GroupWarning warning) const;

    /// The first row of the next group with the warning: after the row's own group, wrapping from
    /// the last group to the first, or the very first one without a row. Nullopt when there is
    /// none.
    std::optional<std::size_t> nextRow(GroupWarning warning, std::optional<std::size_t> row) const;

    /// The first rows of all groups that would lose every copy.
    std::vector<std::size_t> firstRowsThatLoseEveryCopy() const;

private:
    struct Group {
        std::size_t firstRow = 0;
        std::size_t size = 0;
        std::size_t checked = 0;
        bool sharesOnlyEmptyFields = false;

        bool losesEveryCopy() const { return checked == size; }
        bool has(GroupWarning warning) const;
    };

    /// Updates the row's check mark and the count of its group.
    void setChecked(std::size_t row, bool checked);

    std::vector<Group> groups_;
    // By row. Remembering the marks makes an edit cost one row instead of its whole group, which
    // may be the whole book.
    std::vector<std::uint32_t> groupOfRow_;
    std::vector<bool> isChecked_;
    std::size_t losing_ = 0;
    std::size_t checkedRows_ = 0;
    // Nobody can check a person who is in no row, so these are counted once.
    std::size_t checkedElsewhere_ = 0;
    std::size_t sharingOnlyEmptyFields_ = 0;
};

}  // namespace dunmora
