#pragma once

#include <QFontMetrics>

#include <vector>

class QTableView;

namespace dunmora {

class TableCellDelegate;
class TableModel;

/// Sizes the columns of a table. They fit the contents of the first rows; spare width goes to the
/// columns that are wide text. After the user has resized a column, each keeps its width and the
/// last one takes the rest.
///
/// Thread: the main thread. Errors: none.
class TableColumnWidths final {
public:
    /// All must outlive this.
    TableColumnWidths(QTableView& table, const TableModel& model,
                      const TableCellDelegate& delegate);

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
    std::vector<int> natural() const;
    int naturalTextWidth(std::size_t column) const;
    bool stretches(std::size_t column) const;

    QTableView& table_;
    const TableModel& model_;
    const TableCellDelegate& delegate_;
    /// The width of each column before spare width is distributed.
    std::vector<int> wanted_;
    /// The average width of a letter when `wanted_` was computed.
    int letter_;
    bool wereResizedByUser_ = false;
    bool isFitting_ = false;
};

}  // namespace dunmora
