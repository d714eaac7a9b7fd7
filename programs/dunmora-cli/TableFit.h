#pragma once

#include <cstddef>
#include <optional>
#include <vector>

namespace dunmora {

/// What a column of a table needs.
struct ColumnNeed {
    /// The width of the widest cell, or of the title; 0 for a column without any content.
    std::size_t width = 0;
    /// Below this the column is left out rather than narrowed.
    std::size_t least = 0;
    /// Columns with a number are left out when there is no room, the smallest number first; the
    /// very first one before any other is narrowed.
    std::optional<std::size_t> sacrifice = std::nullopt;
    /// Whether all other columns are narrowed before this one.
    bool isEssential = false;
};

/// The widths with which the columns, `gap` apart, fit into `available`; 0 for a column that is
/// left out. Nullopt when even the least widths of those that are never left out do not fit.
/// Thread: any. Errors: none.
std::optional<std::vector<std::size_t>> fittingWidths(std::vector<ColumnNeed> columns,
                                                      std::size_t available, std::size_t gap);

}  // namespace dunmora
