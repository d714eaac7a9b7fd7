#pragma once

#include "adapters/qt/RememberedText.h"

#include <QFontMetrics>

#include <functional>
#include <vector>

class QTableView;

namespace dunmora {

class TableCellDelegate;
class TableModel;

/// Sizes the columns of a table. They fit most texts of rows throughout the table; spare width goes
/// first to the columns that cut the others, then to those that are wide text. After the user has
/// resized a column, now or in an earlier run, each keeps its width and the last one takes the
/// rest.
///
/// Thread: the main thread. Errors: none.
class TableColumnWidths final {
public:
    /// All must outlive this.
    TableColumnWidths(QTableView& table, const TableModel& model,
                      const TableCellDelegate& delegate);

    /// Gives the columns the widths of an earlier run, within the screen, if these are the widths
    /// of all of them.
    void setChosen(ColumnWidths widths);
    /// Calls the handler with the widths of all columns whenever the user has resized one.
    void onChosen(std::function<void(const ColumnWidths&)> handler);

    /// Call this after the model's columns have changed.
    void columnsChanged();
    /// Fits the columns to the model's new rows, unless there are none.
    void rowsChanged();
    /// Scales the widths to the table's new font or style.
    void metricsChanged();
    /// Distributes the width of the table among the columns.
    void fit();
    /// Call this after a section of the header has been resized, by the user or by `fit`.
    void sectionResized(int section, int width);

private:
    struct Width {
        /// Cuts few texts.
        int wanted = 0;
        /// Cuts none, unless it is very long.
        int whole = 0;
    };

    void applyChosen();
    ColumnWidths current() const;
    std::vector<Width> measured() const;
    Width textWidth(std::size_t column) const;
    int leastWidth(std::size_t column) const;
    /// Gives each column that cuts texts an equal share, or what it needs if that is less. Returns
    /// the width that is left.
    int widenCutColumns(std::vector<int>& widths, int spare) const;
    void shareRest(std::vector<int>& widths, int spare) const;

    QTableView& table_;
    const TableModel& model_;
    const TableCellDelegate& delegate_;
    /// The widths of each column before spare width is distributed.
    std::vector<Width> columns_;
    /// The average width of a letter when `columns_` was computed.
    int letter_;
    /// The widths that the user has chosen, by the columns' identifiers.
    ColumnWidths chosen_;
    std::function<void(const ColumnWidths&)> onChosen_;
    bool wereResizedByUser_ = false;
    bool isFitting_ = false;
};

}  // namespace dunmora
