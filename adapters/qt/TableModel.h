#pragma once

#include "adapters/qt/DrawnRow.h"
#include "adapters/qt/RowFilter.h"
#include "adapters/qt/TableColumn.h"
#include "platform/TableView.h"

#include <QAbstractTableModel>

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <span>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace dunmora {

class NamePrefix;

/// The rows that a table shows: those of its data source, or some of them. It holds no data; it
/// asks for a row each time that the row is drawn or read, and remembers only how it showed those
/// rows, for the time in which nothing may be asked.
///
/// A "row" is one that the table shows, counted from 0 as Qt does; a "source row" is the data
/// source's.
///
/// Thread: the main thread. Errors: none.
class TableModel final : public QAbstractTableModel {
public:
    using SourceRows = std::vector<std::uint32_t>;

    explicit TableModel(std::vector<TableColumn> columns);

    void setDataSource(TableViewDataSource* dataSource, TableViewDelegate* delegate);

    /// Asks nothing from now on; rows that were shown stay as they were.
    void freeze() { isAsking_ = false; }

    /// Whether the data source and the delegate may be asked about rows.
    bool isAsking() const { return isAsking_; }

    /// Asks for the number of rows and forgets how they looked. Whether it asks more from then on
    /// is the caller's to say.
    void reload(bool isAsking);

    /// How many rows the data source has.
    std::size_t sourceRowCount() const { return sourceRowCount_; }

    /// Shows only these source rows, which are in ascending order.
    void showOnly(SourceRows sourceRows);
    void showAll();
    /// The source rows that are shown; none where all are.
    const std::optional<SourceRows>& shownRows() const { return shownRows_; }

    std::size_t sourceRow(int row) const;
    /// Where the source row is shown, if it is.
    std::optional<int> rowOf(std::size_t sourceRow) const;
    /// The first row that shows this source row or a later one; the number of rows if none does.
    int firstRowFrom(std::size_t sourceRow) const;

    const std::vector<TableColumn>& columns() const { return columns_; }
    std::optional<int> checkColumn() const { return checkColumn_; }

    /// Asks again for the marks and the looks of all rows that were shown before, so that they are
    /// right also where the next drawing cannot ask.
    void refresh();
    /// A drawing of the table begins: each of its rows is asked for once.
    void beginDrawing() { ++drawing_; }
    /// What a row shows in the drawing that has begun; none for a row that cannot be asked for now.
    const DrawnRow* drawnRow(int row) const;

    /// Hands the data source an edit for each of these source rows whose check mark is different,
    /// then tells the delegate.
    void edit(std::span<const std::size_t> sourceRows, std::string_view column, bool isChecked);
    /// Whether the data source says so; false while it may not be asked.
    bool isChecked(std::size_t sourceRow, std::string_view column) const;

    /// The text in a cell as it is in the data source.
    QString sourceText(std::size_t sourceRow, std::size_t column) const;
    /// Whether the source row has what the filter looks for.
    bool matches(std::size_t sourceRow, RowFilter& filter) const;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /// For typing ahead: the next row, from the start round to it, in which a first or a last name
    /// begins so.
    QModelIndexList match(const QModelIndex& start, int role, const QVariant& value, int hits,
                          Qt::MatchFlags flags) const override;

private:
    std::optional<CellValue> value(std::size_t sourceRow, std::string_view column) const;
    std::optional<int> nextNamed(int firstRow, const NamePrefix& prefix) const;
    const DrawnRow* freshRow(int row) const;
    std::size_t groupOf(std::size_t sourceRow) const;
    bool beginsGroup(int row, std::size_t group) const;
    void askForTexts(std::size_t sourceRow, DrawnRow& drawn) const;
    void askForMarks(std::size_t sourceRow, DrawnRow& drawn) const;
    void remember(std::size_t sourceRow) const;
    QString accessibleText(const DrawnRow* drawn, std::size_t column) const;
    QString who(const DrawnRow& drawn) const;
    QString textOf(const DrawnRow& drawn, std::string_view identifier) const;

    std::vector<TableColumn> columns_;
    std::optional<int> checkColumn_;
    TableViewDataSource* dataSource_ = nullptr;
    TableViewDelegate* delegate_ = nullptr;
    bool isAsking_ = false;
    std::size_t sourceRowCount_ = 0;
    std::optional<SourceRows> shownRows_;
    std::uint64_t drawing_ = 1;
    mutable std::unordered_map<std::size_t, DrawnRow> drawnRows_;
    /// The same source rows, the one that was drawn first at the front.
    mutable std::deque<std::size_t> order_;
    /// Kept so that a search costs no memory for each row.
    mutable std::vector<RowFilter::Cell> searched_;
};

}  // namespace dunmora
