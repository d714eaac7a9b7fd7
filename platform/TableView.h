#pragma once

#include "platform/CheckBox.h"
#include "platform/View.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace dunmora {

/// What a cell shows: a text, a point in time, or a check mark. A text is a view that ends with the
/// next change of the data.
using CellValue = std::variant<std::string_view, std::chrono::sys_seconds, bool>;

/// Who fills a table and takes its edits. A row is counted from 0; a column is named by its
/// identifier.
///
/// Thread: the main thread. Errors: none.
class TableViewDataSource {
public:
    virtual ~TableViewDataSource() = default;

    virtual std::size_t numberOfRows() = 0;

    /// What stands in a cell; none for an empty one, also for a row or a column that there is not.
    virtual std::optional<CellValue> objectValue(std::string_view column, std::ptrdiff_t row) = 0;

    /// The user has edited a cell; the value is what the cell would show now.
    virtual void setObjectValue(const CellValue& value, std::string_view column,
                                std::ptrdiff_t row) = 0;

    /// The user has selected other rows.
    virtual void tableViewSelectionDidChange() = 0;
};

/// How a row differs from its neighbours.
struct RowStyle {
    /// Rows with the same number that stand next to each other belong together; they share a band,
    /// and a line parts them from the next ones.
    std::size_t group = 0;
    /// Something is wrong with the row; no text means that nothing is.
    struct Warning {
        /// The sign to show: a person about to be lost is graver than a doubtful match.
        enum class Sign { None, Doubt, Loss };
        Sign sign = Sign::None;
        /// A sentence that says what, for a tool tip and for those who do not see the sign.
        std::string text;
    };
    Warning warning;
};

/// Who tells a table how its rows look, and hears of the user's edits.
///
/// Thread: the main thread. Errors: none.
class TableViewDelegate {
public:
    virtual ~TableViewDelegate() = default;

    virtual RowStyle styleOfRow(std::size_t row) = 0;

    /// The user has edited these rows in one go; the data source has taken all of it.
    virtual void rowsEdited(std::span<const std::size_t> rows) = 0;
};

/// A table of rows that it asks its data source for when it draws them. Those rows are asked for
/// only while the table is enabled: a disabled one goes on showing the cells that it has drawn
/// before, leaves others blank, and asks its data source and its delegate nothing until it is
/// enabled and reloaded. It offers no sorting.
///
/// Thread: the main thread, but for `setNeedsDisplay`. Errors: none.
class TableView : public View {
public:
    /// Both must outlive the table, or the last call of this; either may be none.
    virtual void setDataSource(TableViewDataSource* dataSource, TableViewDelegate* delegate) = 0;

    virtual void setEnabled(bool enabled) = 0;

    /// Requests one redraw; requests that arrive before it happens are merged.
    /// Thread: any; never waits for the main thread.
    virtual void setNeedsDisplay() = 0;

    /// Asks for the number of rows now and for the cells when they are drawn.
    virtual void reloadData() = 0;

    /// The row that has the keyboard focus among the selected ones, if any.
    virtual std::optional<std::size_t> selectedRow() const = 0;

    /// Selects this row alone and scrolls to it; a filter that hides it goes away.
    virtual void selectRow(std::size_t row) = 0;

    /// Hands the data source an edit of this column for every selected row that does not show the
    /// state yet, then tells the delegate. Rows that a filter hides are not selected.
    virtual void editSelectedRows(std::string_view column, CheckState state) = 0;

    /// Lets the user type a text that the rows to show have to contain; marks do not change.
    virtual void beginFiltering() = 0;

    /// Takes the filter away, so that every row is shown.
    virtual void endFiltering() = 0;
};

}  // namespace dunmora
