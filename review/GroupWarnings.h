#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace dunmora {

class ContactsParser;

/// What a group of the review is warned about.
enum class GroupWarning {
    /// Every copy is checked: the person is about to be lost.
    LosesEveryCopy,
    /// The match key is nothing but separators: several people who have no text in common.
    SharesOnlyEmptyFields,
};

/// Which groups of the review the user should look at again, kept up to date row by row.
///
/// Thread: the main thread, while no job runs. Errors: none.
class GroupWarnings final {
public:
    /// Forgets all groups: a job is about to change the rows.
    void clear();

    /// Finds the groups of the engine's rows anew.
    void update(const ContactsParser& engine);

    /// Takes over the check marks of these rows; the others' have not changed. When all groups are
    /// forgotten it does nothing and does not look at the engine.
    void rowsEdited(const ContactsParser& engine, std::span<const std::size_t> rows);

    /// How many groups would lose every copy; each is one person to whoever looks at the review.
    std::size_t peopleWhoLoseEveryCopy() const { return losing_; }

    /// How many people stand in groups that share only empty fields.
    std::size_t peopleWhoShareOnlyEmptyFields() const { return sharingOnlyEmptyFields_; }

    /// The number of the row's group, counted from 0; none for a row that is in no group.
    std::optional<std::size_t> groupOfRow(std::size_t row) const;

    bool hasWarning(std::size_t row, GroupWarning warning) const;

    /// The first row of the next group with the warning after the row's own group, from the top
    /// again after the last one; without a row, of the first such group.
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

    /// Takes over one row's check mark; the group gets lost or is kept by that.
    void setChecked(std::size_t row, bool checked);

    std::vector<Group> groups_;
    // By row. The marks as they were last seen: what an edit changes is found without looking at
    // the rest of the group, which may be the whole book.
    std::vector<std::uint32_t> groupOfRow_;
    std::vector<bool> isChecked_;
    std::size_t losing_ = 0;
    std::size_t sharingOnlyEmptyFields_ = 0;
};

}  // namespace dunmora
