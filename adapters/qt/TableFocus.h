#pragma once

#include <QPointer>
#include <QTableView>

#include <functional>

namespace dunmora {

class TableFilterBar;

/// Gives a table the keyboard focus, and returns it after the table was disabled or hidden.
///
/// Thread: the main thread. Errors: none.
class TableFocus final {
public:
    /// The widget may be destroyed first; then nothing happens. The bar must outlive this.
    TableFocus(QTableView& table, const TableFilterBar& filterBar);

    void take();
    /// Takes the focus when no widget of the window can use it.
    void takeIfFree();

    /// Runs `disable`, which disables the table and its filter bar, and remembers which of them had
    /// the focus.
    void rememberDuring(const std::function<void()>& disable);
    /// Returns the focus to the widget that had it, unless the user has moved it since.
    void restore();

private:
    QPointer<QTableView> table_;
    const TableFilterBar& filterBar_;
    /// The focus widgets right before and right after the table was disabled.
    QPointer<QWidget> before_;
    QPointer<QWidget> after_;
};

}  // namespace dunmora
