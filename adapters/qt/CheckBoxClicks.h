#pragma once

#include <QPersistentModelIndex>
#include <QPointer>
#include <QTableView>

#include <functional>

class QMouseEvent;

namespace dunmora {

class TableCellDelegate;

/// The user's clicks on check boxes: a click marks a row without changing the selection, and only
/// when the button goes down and up on the same box.
///
/// Thread: the main thread. Errors: none.
class CheckBoxClicks final {
public:
    /// `clicked` is called for each click. The delegate must outlive this.
    CheckBoxClicks(QTableView& table, const TableCellDelegate& delegate,
                   std::function<void(const QModelIndex& index)> clicked);

    /// Each returns whether it has handled the event.
    bool pressed(const QMouseEvent& mouse);
    bool released(const QMouseEvent& mouse);

    /// Whether the button is down on a check box, so that moving the mouse selects nothing.
    bool isHeld() const { return pressed_.isValid(); }
    /// Ignores the coming release of the button, because other rows are shown now.
    void cancel() { pressed_ = QModelIndex(); }

private:
    QPointer<QTableView> table_;
    const TableCellDelegate& delegate_;
    std::function<void(const QModelIndex& index)> clicked_;
    QPersistentModelIndex pressed_;
};

}  // namespace dunmora
