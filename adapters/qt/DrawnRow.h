#pragma once

#include "platform/TableView.h"

#include <QString>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace dunmora {

/// Everything that a table shows of a row.
struct DrawnRow {
    /// One text for each column; empty for a check box.
    std::vector<QString> texts;
    /// The column in which a substitute is drawn because its text is blank, and that text.
    std::optional<std::size_t> substituteColumn;
    QString substitute;
    bool isChecked = false;
    RowStyle style;
    /// Whether the row above belongs to another group.
    bool beginsGroup = false;
    /// The frame for which the row was read, counted from 1.
    std::uint64_t frame = 0;
};

}  // namespace dunmora
