#pragma once

#include "platform/TableView.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

namespace dunmora {

/// Which rows of the data source a table shows, and where: all of them, or those that a filter
/// found. A "row" is one that the table shows, counted from 0 as Qt does; a "source row" is the
/// data source's.
class ShownRows final {
public:
    using SourceRows = std::vector<std::uint32_t>;

    /// Shows all of these rows; rows beyond what Qt can count are omitted.
    void reset(std::size_t sourceRowCount);
    /// Shows only the source rows that a filter found, in ascending order, and those that belong
    /// together with them.
    void showOnly(const SourceRows& found,
                  const std::function<RowRange(std::size_t sourceRow)>& rowsTogetherWith);
    void showAll();
    bool areFiltered() const { return filtered_.has_value(); }

    std::size_t sourceRowCount() const { return sourceRowCount_; }
    int count() const;
    /// How many rows are shown for themselves: all of them, or those that the filter found.
    std::size_t foundCount() const;
    /// Whether the row is shown only because it belongs together with one that the filter found.
    bool isCompanion(int row) const;

    std::size_t sourceRow(int row) const;
    /// The row that shows this source row, if any.
    std::optional<int> rowOf(std::size_t sourceRow) const;
    /// The first row that shows this source row or a later one; the number of rows if none does.
    int firstRowFrom(std::size_t sourceRow) const;

private:
    std::size_t sourceRowCount_ = 0;
    std::optional<SourceRows> filtered_;
    /// By row; only while rows are filtered.
    std::vector<bool> isCompanion_;
    std::size_t companions_ = 0;
};

}  // namespace dunmora
