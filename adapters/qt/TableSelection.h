#pragma once

#include <QPersistentModelIndex>
#include <QPointer>
#include <QTableView>

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

namespace dunmora {

class TableModel;

/// The selected rows of a table, as rows of the data source, so that they stay selected when other
/// rows are shown.
///
/// Thread: the main thread. Errors: none.
class TableSelection final : public QObject {
public:
    enum class End { First, Last };
    enum class Move { Selects, Extends };

    /// Sets the widget's model. `changed` is called when the selected rows have changed. The widget
    /// may be destroyed first; then there is no selection.
    TableSelection(QTableView& table, TableModel& model, std::function<void()> changed);

    bool isEmpty() const;
    /// In ascending order.
    std::vector<std::size_t> sourceRows() const;
    /// The rows that a command on the selection edits: without those that are shown only together
    /// with others, unless nothing else is selected.
    std::vector<std::size_t> sourceRowsToEdit() const;
    /// The selected row that has the keyboard focus, if any.
    std::optional<std::size_t> currentSourceRow() const;

    /// Selects this row alone and scrolls to it. Rows are those that the table shows.
    void select(int row);
    /// Moves to an end of the table, as Home and End do.
    void moveToEnd(End end, Move move);

    /// Runs `change`, which changes which rows are shown, and restores the selection of those that
    /// still are. A selection too scattered to draw is dropped.
    void keepDuring(const std::function<void()>& change);

private:
    void restore(const std::vector<std::size_t>& sourceRows);
    void restoreCurrent(std::size_t sourceRow, int column);

    QPointer<QTableView> table_;
    TableModel& model_;
    std::function<void()> changed_;
    /// Set while the selection is restored: such changes are not the user's.
    bool isKeeping_ = false;
    /// The row from which the keyboard extends the selection.
    QPersistentModelIndex anchor_;
};

}  // namespace dunmora
