#pragma once

#include "adapters/qt/DateFormat.h"
#include "platform/TableView.h"

#include <QString>

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace dunmora {

/// Reads and edits the rows of a data source and its delegate while they may be asked. Rows are
/// numbered as in the data source.
///
/// Thread: the main thread. Errors: none.
class RowReader final {
public:
    /// Returns whether the columns have changed; a null data source keeps the previous columns.
    bool setDataSource(TableViewDataSource* dataSource, TableViewDelegate* delegate);

    /// Whether the data source and the delegate may be asked about rows.
    bool isAsking() const { return isAsking_; }
    void setAsking(bool isAsking) { isAsking_ = isAsking && dataSource_ != nullptr; }

    /// Null while the delegate may not be asked.
    TableViewDelegate* delegate() const { return isAsking_ ? delegate_ : nullptr; }

    /// Adds or removes the column of the notes, as the delegate wants it. Returns whether the
    /// columns have changed.
    bool updateNotes();

    /// Those of the data source, then that of the notes, if any.
    const std::vector<TableColumn>& columns() const { return columns_; }
    /// The index of the column with the check boxes.
    std::optional<int> checkColumn() const;

    /// Asks the data source even while rows may not be asked about; 0 without a data source.
    std::size_t numberOfRows() const;

    /// Returns what the cell shows; empty for a check box and while asking is not allowed.
    QString text(std::size_t row, std::size_t column) const;
    /// Whether the cell shows a check mark; false while asking is not allowed.
    bool isChecked(std::size_t row, std::string_view column) const;
    RowStyle style(std::size_t row) const;
    /// The whole warning of the row; empty while asking is not allowed.
    QString wholeWarning(std::size_t row) const;
    /// A text that the column must have room for; empty for none and while asking is not allowed.
    QString leastText(std::size_t column) const;

    const DateFormat& dates() const { return dates_; }

    // These are about no row and can always be asked. They are empty without a delegate.
    QString countText(std::size_t shown, std::size_t all) const;
    QString accessibleCellText(std::string_view title, const std::optional<QString>& shown) const;

    /// Passes the data source an edit for each row that is not in this state yet, then notifies the
    /// delegate.
    void edit(std::span<const std::size_t> rows, std::string_view column, bool isChecked);

private:
    std::optional<CellValue> value(std::size_t row, std::string_view column) const;

    TableViewDataSource* dataSource_ = nullptr;
    TableViewDelegate* delegate_ = nullptr;
    bool isAsking_ = false;
    std::vector<TableColumn> columns_;
    DateFormat dates_;
};

}  // namespace dunmora
