#include "adapters/qt/TableAnnouncement.h"

#include "adapters/qt/TableModel.h"

#include <QAccessible>
#include <QTableView>

#include <algorithm>

namespace dunmora {

void announceCheckMarks(QTableView& table, const TableModel& model,
                        std::span<const std::size_t> sourceRows)
{
    const auto column = model.checkColumn();
    if (!QAccessible::isActive() || !column) {
        return;
    }
    const int first = std::max(table.rowAt(0), 0);
    const int bottom = table.rowAt(table.viewport()->height() - 1);
    const int last = bottom < 0 ? model.rowCount() - 1 : bottom;
    for (int row = first; row <= last; ++row) {
        if (!std::binary_search(sourceRows.begin(), sourceRows.end(),
                                model.rows().sourceRow(row))) {
            continue;
        }
        // Qt counts the headers, shown or not, as the first row and the first column.
        const int child = (row + 1) * (model.columnCount() + 1) + *column + 1;
        QAccessible::State changed;
        changed.checked = true;
        QAccessibleStateChangeEvent state(&table, changed);
        state.setChild(child);
        QAccessible::updateAccessibility(&state);
        QAccessibleEvent name(&table, QAccessible::NameChanged);
        name.setChild(child);
        QAccessible::updateAccessibility(&name);
    }
}

}  // namespace dunmora
