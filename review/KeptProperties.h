#pragma once

#include "review/CardKeys.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace dunmora {

/// Which properties of each row's card an unchecked row of its group has, too; kept up to date as
/// rows are checked and unchecked. Keeps a number for each key instead of the keys: some dozen
/// bytes a property.
///
/// Thread: as a standard container. Errors: none.
class KeptProperties final {
public:
    void clear() { *this = {}; }

    /// Adds the rows of the next group, all unchecked.
    void addGroup(std::span<const CardKeys> cards);

    /// Adds the next group, of rows whose cards all hold the same: one property that stands for all
    /// of them, at least one.
    void addGroupOfEqual(std::size_t rows);

    /// Adds groups that another object has and of which no row has been checked.
    void append(const KeptProperties& groups);

    /// Reads the check marks of these rows, of which each may be there twice. An edit costs the
    /// properties of these rows, or of their whole groups when what is kept has changed.
    void rowsEdited(std::span<const std::size_t> rows,
                    const std::function<bool(std::size_t row)>& isChecked);

    std::size_t rows() const { return rows_.size(); }
    /// The number of the row's group, from 0, in the order in which they were added.
    std::size_t groupOf(std::size_t row) const { return rows_[row].group; }
    bool isChecked(std::size_t row) const { return rows_[row].isChecked; }
    /// Whether another row of the group, an unchecked one, has the property.
    bool isKept(std::size_t row, std::size_t property) const;
    /// Whether the row is checked and has a property that no unchecked row of its group has.
    bool isOnlyInRow(std::size_t row) const { return rows_[row].holdsUnique; }
    /// How many rows those are.
    std::size_t count() const { return count_; }

    /// The unchecked rows of the row's group, without itself, at most `most`.
    std::vector<std::size_t> otherKeptRows(std::size_t row, std::size_t most) const;

private:
    /// The number of a key that some row needs and another row of the group provides.
    using Id = std::uint32_t;

    struct Row {
        std::uint32_t group = 0;
        // In `properties_` and `provided_`; the next row's are the ends.
        std::uint32_t firstProperty = 0;
        std::uint32_t firstProvided = 0;
        bool isChecked = false;
        bool holdsUnique = false;
    };

    struct Ids {
        std::vector<Id> needed;
        std::vector<Id> provided;
    };

    void addRow();
    std::size_t propertiesOf(std::size_t row) const;
    Ids number(std::span<const CardKeys> cards);
    std::span<const Id> neededBy(std::size_t property) const;
    std::span<const Id> providedBy(std::size_t row) const;
    std::size_t groupEnd(std::size_t group) const;
    /// Updates what is kept. Returns whether that is another set of keys now.
    bool setChecked(std::size_t row, bool checked);
    void judge(std::size_t row);

    std::vector<std::uint32_t> firstRows_;  // By group.
    std::vector<Row> rows_;
    std::vector<std::uint32_t> properties_;  // The first of each property's ids in `needed_`.
    std::vector<Id> needed_;
    std::vector<Id> provided_;
    // How many unchecked rows provide the key; by its number.
    std::vector<std::uint32_t> kept_;
    std::size_t count_ = 0;
};

}  // namespace dunmora
