#pragma once

#include <cstddef>
#include <cstdint>
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
    /// Shows only these source rows, which are in ascending order.
    void showOnly(SourceRows sourceRows) { filtered_ = std::move(sourceRows); }
    void showAll() { filtered_.reset(); }
    bool areFiltered() const { return filtered_.has_value(); }

    std::size_t sourceRowCount() const { return sourceRowCount_; }
    int count() const;

    std::size_t sourceRow(int row) const;
    /// The row that shows this source row, if any.
    std::optional<int> rowOf(std::size_t sourceRow) const;
    /// The first row that shows this source row or a later one; the number of rows if none does.
    int firstRowFrom(std::size_t sourceRow) const;

private:
    std::size_t sourceRowCount_ = 0;
    std::optional<SourceRows> filtered_;
};

}  // namespace dunmora
