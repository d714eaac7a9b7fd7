#pragma once

#include "platform/TableView.h"

#include <QString>

#include <cstdint>
#include <vector>

namespace dunmora {

/// All that a table shows of a row.
struct DrawnRow {
    /// One line a column; a check mark has none.
    std::vector<QString> texts;
    bool isChecked = false;
    RowStyle style;
    /// The row above is of another group.
    bool beginsGroup = false;
    /// The drawing of the table for which it was asked; they are counted from 1.
    std::uint64_t drawing = 0;
};

}  // namespace dunmora
