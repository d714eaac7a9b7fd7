#pragma once

#include "programs/dunmora-cli/ContactCells.h"

#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace dunmora {

struct TableStyle;

/// How wide the columns of a table of people are, and what that does to its cells.
/// Thread: any. Errors: none.
struct ContactTableFit {
    /// `widestCells` are the widths of the widest cells, 0 for a column without any content; before
    /// each line is a margin.
    ContactTableFit(const ColumnWidths& widestCells, const TableStyle& style, std::size_t margin);

    /// Whether each value needs a line of its own; there are no columns then.
    bool isStacked = false;
    /// 0 for a column that is not shown.
    ColumnWidths widths{};
    /// What is not shown and how to see it, as a line without its end; empty if nothing is missing.
    std::string remark;

    bool isShown(std::size_t column) const { return widths[column] > 0; }
    bool isLast(std::size_t column) const { return column == last_; }

    /// The part of the cell that is shown: a view of it or of `buffer`.
    std::string_view shownText(std::size_t column, const ContactCell& cell,
                               std::string& buffer) const;
    /// Removes as much from the beginning of the shown part as fits in one line, and returns it.
    std::string_view takePiece(std::size_t column, std::string_view& text) const;

private:
    enum class Excess { Overflows, Continues, LosesEnd, LosesBeginning, LosesTime };

    std::array<Excess, kTableColumns.size()> excess_{};
    std::size_t last_ = 0;
};

}  // namespace dunmora
