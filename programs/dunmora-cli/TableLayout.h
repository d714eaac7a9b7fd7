#pragma once

#include <cstddef>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

/// Aligns the columns of a table for a terminal. First measure every cell, then append them line by
/// line, so that a big table is never held twice. All texts must be safe to display.
///
/// Thread: any; one call at a time. Errors: none.
class TableLayout final {
public:
    static constexpr auto kNoLimit = std::numeric_limits<std::size_t>::max();

    /// Cells wider than `widestColumn` overflow their column.
    explicit TableLayout(std::size_t columns, std::size_t widestColumn = kNoLimit);

    /// Makes the column wide enough for the cell.
    void measure(std::size_t column, std::string_view cell);

    /// Appends the cell, padded up to the next column; the last column needs no padding.
    void appendCell(std::string& out, std::size_t column, std::string_view cell) const;

    /// Removes trailing padding and ends the line.
    static void endLine(std::string& out);

    /// Between two columns.
    static constexpr std::string_view kGap = "  ";

private:
    std::size_t widestColumn_;
    std::vector<std::size_t> widths_;
};

}  // namespace dunmora
