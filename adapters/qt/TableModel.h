#pragma once

#include "adapters/qt/DrawnRows.h"
#include "adapters/qt/RowReader.h"
#include "adapters/qt/ShownRows.h"

#include <QAbstractTableModel>

#include <cstddef>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

namespace dunmora {

/// A data source and its delegate as a Qt model. It holds no data: it reads a row whenever the row
/// is drawn or requested, and caches only how rows were drawn, to show them while the data source
/// may not be asked. A "row" is one that is shown, a "source row" the data source's (see
/// `ShownRows`).
///
/// Thread: the main thread. Errors: none.
class TableModel final : public QAbstractTableModel {
public:
    /// Returns whether the columns have changed.
    bool setDataSource(TableViewDataSource* dataSource, TableViewDelegate* delegate);

    /// Stops asking until the next `reload`; rows that were drawn stay as they are now.
    void freeze();
    bool isAsking() const { return reader_.isAsking(); }
    /// Null while the delegate may not be asked.
    TableViewDelegate* delegate() const { return reader_.delegate(); }
    /// Asks for the number of rows and the notes' column, shows all rows, and forgets how they were
    /// drawn. Returns whether the columns have changed.
    bool reload(bool isAsking);

    const ShownRows& rows() const { return rows_; }
    /// The row itself while the delegate may not be asked.
    RowRange rowsTogetherWith(std::size_t sourceRow) const;
    /// Shows only the source rows that a filter found, and those that belong together with them.
    void showOnly(const ShownRows::SourceRows& found);
    void showAll();
    /// What the open filter says about the number of rows.
    QString countText() const;
    /// The filter for what the user typed; null when every row matches, and while the delegate may
    /// not be asked.
    std::unique_ptr<RowFilter> filter(const QString& typed) const;

    const std::vector<TableColumn>& columns() const { return reader_.columns(); }
    std::optional<int> checkColumn() const { return reader_.checkColumn(); }
    /// The text that the cell would show.
    QString sourceText(std::size_t sourceRow, std::size_t column) const;
    /// A text that the column must have room for, if any.
    QString leastText(std::size_t column) const { return reader_.leastText(column); }
    const DateFormat& dates() const { return reader_.dates(); }

    /// Begins a new frame, for which each row is read once.
    void beginFrame() { drawnRows_.beginFrame(); }
    /// The row as the current frame shows it; null for one that is blank.
    const DrawnRow* drawnRow(int row) const;
    /// The text of the cell, or what is drawn instead because it is blank.
    static const QString& shownText(const DrawnRow& drawn, std::size_t column);
    static bool isSubstitute(const DrawnRow& drawn, std::size_t column);
    /// The row's texts, as the table shows them, with tabs between them; without the check box.
    QString tabSeparatedText(std::size_t sourceRow) const;
    /// The whole warning of a row that was drawn.
    QString wholeWarning(int row) const;

    bool isChecked(std::size_t sourceRow, std::string_view column) const;
    /// Edits each of these source rows that is not in this state yet.
    void edit(std::span<const std::size_t> sourceRows, std::string_view column, bool isChecked);

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

    /// Asks the delegate which row to select when the user types on the table; Qt then calls this
    /// with `Qt::MatchStartsWith`.
    QModelIndexList match(const QModelIndex& start, int role, const QVariant& value, int hits,
                          Qt::MatchFlags flags) const override;

private:
    std::optional<std::size_t> sourceRowAbove(int row) const;
    QString accessibleText(const DrawnRow* drawn, std::size_t column) const;

    RowReader reader_;
    ShownRows rows_;
    mutable DrawnRows drawnRows_{reader_};
};

}  // namespace dunmora
