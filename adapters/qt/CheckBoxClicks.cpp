#include "adapters/qt/CheckBoxClicks.h"

#include "adapters/qt/TableCellDelegate.h"

#include <QItemSelectionModel>
#include <QMouseEvent>

#include <utility>

namespace dunmora {

CheckBoxClicks::CheckBoxClicks(QTableView& table, const TableCellDelegate& delegate,
                               std::function<void(const QModelIndex& index)> clicked)
    : table_(&table), delegate_(delegate), clicked_(std::move(clicked))
{
}

bool CheckBoxClicks::pressed(const QMouseEvent& mouse)
{
    cancel();
    if (mouse.button() != Qt::LeftButton || mouse.modifiers() != Qt::NoModifier) {
        return false;
    }
    const auto position = mouse.position().toPoint();
    const auto index = table_->indexAt(position);
    if (!index.isValid() || !delegate_.checkBoxArea(index).contains(position)) {
        return false;
    }
    pressed_ = index;
    table_->selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    return true;
}

bool CheckBoxClicks::released(const QMouseEvent& mouse)
{
    if (mouse.button() != Qt::LeftButton || !isHeld()) {
        return false;
    }
    const QModelIndex index = std::exchange(pressed_, QPersistentModelIndex());
    if (delegate_.checkBoxArea(index).contains(mouse.position().toPoint())) {
        clicked_(index);
    }
    return true;
}

}  // namespace dunmora
