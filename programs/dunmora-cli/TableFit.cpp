#include "programs/dunmora-cli/TableFit.h"

#include <algorithm>
#include <iterator>

namespace dunmora {

namespace {

using Columns = std::vector<ColumnNeed>;

std::size_t total(const Columns& columns, std::size_t ColumnNeed::*width, std::size_t gap)
{
    std::size_t sum = 0;
    for (const auto& column : columns) {
        if (column.width > 0) {
            sum += (sum > 0 ? gap : 0) + column.*width;
        }
    }
    return sum;
}

/// The column to leave out next; the end when none may be.
Columns::iterator nextSacrifice(Columns& columns)
{
    const auto place = [](const ColumnNeed& column) {
        return column.width > 0 ? column.sacrifice : std::nullopt;
    };
    auto next = columns.end();
    for (auto each = columns.begin(); each != columns.end(); ++each) {
        if (place(*each) && (next == columns.end() || *each->sacrifice < *next->sacrifice)) {
            next = each;
        }
    }
    return next;
}

/// Makes the widest of these columns narrower by one. Returns whether one could be.
bool narrowWidest(Columns& columns, bool essential)
{
    auto widest = columns.end();
    for (auto each = columns.begin(); each != columns.end(); ++each) {
        if (each->isEssential == essential && each->width > each->least &&
            (widest == columns.end() || each->width >= widest->width)) {
            widest = each;
        }
    }
    if (widest == columns.end()) {
        return false;
    }
    --widest->width;
    return true;
}

}  // namespace

std::optional<std::vector<std::size_t>> fittingWidths(std::vector<ColumnNeed> columns,
                                                      std::size_t available, std::size_t gap)
{
    const auto exceeds = [&](std::size_t ColumnNeed::*width) {
        return total(columns, width, gap) > available;
    };
    bool isFirst = true;
    while (exceeds(isFirst ? &ColumnNeed::width : &ColumnNeed::least)) {
        isFirst = false;
        const auto left = nextSacrifice(columns);
        if (left == columns.end()) {
            break;
        }
        left->width = 0;
    }
    if (exceeds(&ColumnNeed::least)) {
        return std::nullopt;
    }
    while (exceeds(&ColumnNeed::width) &&
           (narrowWidest(columns, false) || narrowWidest(columns, true))) {}
    std::vector<std::size_t> widths;
    std::transform(columns.begin(), columns.end(), std::back_inserter(widths),
                   [](const ColumnNeed& column) { return column.width; });
    return widths;
}

}  // namespace dunmora
