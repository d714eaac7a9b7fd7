#pragma once

#include <QFontMetrics>

#include <vector>

class QTableView;

namespace dunmora {

class TableCellDelegate;
class TableModel;

/// How wide the columns of a table are. They have room for what stands in the first rows;
/// what the window has more goes to the columns of names. When the user has changed a width, all
/// keep theirs but the last one, which takes the room that is left.
///
/// Thread: the main thread. Errors: none.
class TableColumnWidths final {
public:
    /// All must outlive this.
    TableColumnWidths(QTableView& table, const TableModel& model,
                      const TableCellDelegate& delegate);

    /// There are other rows: if there are any, the columns take the widths that these need.
    void rowsChanged();
    /// Takes the widths over to the table's new font or style.
    void metricsChanged();
    /// Gives what room there is to the columns.
    void fit();
    /// A section of the header has another width.
    void sectionResized(int section, int width);

private:
    std::vector<int> natural() const;
    int naturalTextWidth(std::size_t column) const;
    bool stretches(std::size_t column) const;

    QTableView& table_;
    const TableModel& model_;
    const TableCellDelegate& delegate_;
    /// What each column should have before there is more room than that.
    std::vector<int> wanted_;
    /// The average width of a letter for which `wanted_` is right.
    int letter_;
    bool areTheUsers_ = false;
    bool isFitting_ = false;
};

}  // namespace dunmora
