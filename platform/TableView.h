#pragma once

#include "platform/CheckBox.h"
#include "platform/View.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>

namespace dunmora {

/// What a cell shows: a text, a point in time, or a check mark. A text is a view that is valid
/// until the data changes.
using CellValue = std::variant<std::string_view, std::chrono::sys_seconds, bool>;

/// A column of a table. The texts live as long as the program.
struct TableColumn {
    std::string_view identifier;
    std::string_view title;
    enum class Kind {
        Text,
        /// Shares the width that no column needs.
        WideText,
        /// Points in time, which are never cut off.
        Date,
        CheckBox,
        /// The note of each row (`RowStyle::note`), which is not the data source's.
        Note
    };
    Kind kind = Kind::Text;

    bool operator==(const TableColumn&) const = default;
};

/// Supplies a table's cells and takes its edits. Rows are counted from 0; a column is named by its
/// identifier.
///
/// Thread: the main thread. Errors: none.
class TableViewDataSource {
public:
    virtual ~TableViewDataSource() = default;

    /// The columns from left to right, the same at every call.
    virtual std::span<const TableColumn> columns() = 0;

    virtual std::size_t numberOfRows() = 0;

    /// Returns the value of a cell; nothing for an empty one and for a row or column that does not
    /// exist.
    virtual std::optional<CellValue> objectValue(std::string_view column, std::ptrdiff_t row) = 0;

    /// The user has edited a cell; the value is what the cell would show now.
    virtual void setObjectValue(const CellValue& value, std::string_view column,
                                std::ptrdiff_t row) = 0;

    /// The user has selected other rows.
    virtual void tableViewSelectionDidChange() = 0;
};

/// Adjacent rows.
struct RowRange {
    std::size_t first = 0;
    std::size_t size = 0;

    bool operator==(const RowRange&) const = default;
};

/// What a table shows of a row besides its cells.
struct RowStyle {
    /// Adjacent rows with the same number belong together: they share a background, and a line
    /// separates them from the next group.
    std::size_t group = 0;
    /// Something is wrong with the row; an empty text means that nothing is.
    struct Warning {
        /// The icon to show, in ascending order of what the user may lose: something that no other
        /// copy holds, a different person, a person's last copy.
        enum class Sign { None, OnlyHere, Doubt, Loss };
        Sign sign = Sign::None;
        /// A sentence for the tool tip and for assistive technology, unless the delegate's
        /// `wholeWarning` says more.
        std::string text;
    };
    Warning warning;
    /// A text to show, drawn quietly, where this column's cell is blank.
    struct Substitute {
        /// The column's identifier; empty for none.
        std::string_view column;
        std::string text;
        /// What assistive technology reads of the cell.
        std::string accessibleText;
    };
    Substitute substitute;
    /// Drawn quietly beside the columns of the data source, if the delegate has a `noteTitle`.
    std::string note;
    /// What assistive technology reads of the row's check box: who it is about, its state, and the
    /// warning.
    std::string accessibleText;
};

/// Selects the rows that contain what the user typed. It is valid until the rows or their data
/// change, or the delegate that created it is destroyed.
///
/// Thread: the main thread. Errors: none.
class RowFilter {
public:
    virtual ~RowFilter() = default;

    virtual bool matches(std::size_t row) = 0;

    /// Whether every row that matches this filter matches the filter of `earlier`, too.
    virtual bool narrows(std::string_view earlier) const = 0;
};

/// Decides how a table's rows look and what the user's typing finds, and is notified of edits.
///
/// Thread: the main thread. Errors: none.
class TableViewDelegate {
public:
    virtual ~TableViewDelegate() = default;

    virtual RowStyle styleOfRow(std::size_t row) = 0;

    /// Returns the row's whole warning, for its tool tip and for assistive technology. Unlike
    /// `styleOfRow`, which is asked for every row on the screen, this may take a while.
    virtual std::string wholeWarning(std::size_t row) = 0;

    /// The title of the notes' column, asked whenever the table is reloaded; empty for a table
    /// without notes. It lives as long as the program.
    virtual std::string_view noteTitle() = 0;

    /// Returns a text that the column has room for whatever its cells contain; empty for none. It
    /// lives as long as the program.
    virtual std::string_view leastText(std::string_view column) = 0;

    /// The selected row has changed (`TableView::selectedRow`); changes in a row are merged.
    virtual void selectedRowDidChange() = 0;

    /// The user has edited these rows in one step; the data source has been given every edit.
    virtual void rowsEdited(std::span<const std::size_t> rows) = 0;

    /// Returns the rows that belong together with this one, itself included: a filter that finds
    /// one of them shows them all.
    virtual RowRange rowsTogetherWith(std::size_t row) = 0;

    /// Returns the filter for a text in UTF-8, or null when every row matches. The text is empty
    /// while the user has not typed any, and while the table's filter is closed.
    virtual std::unique_ptr<RowFilter> rowFilter(std::string_view typed) = 0;

    /// Returns the row to select when the user types these letters on the table: the first match
    /// among the rows that are shown, from row `first` on, wrapping from the last to the first.
    virtual std::optional<std::size_t>
    rowForTyping(std::string_view typed, std::size_t first,
                 const std::function<bool(std::size_t row)>& isShown) = 0;

    /// Returns the text of the open filter about how many rows it found. A disabled table asks for
    /// it, too, because it is about no row in particular.
    virtual std::string countText(std::size_t found, std::size_t all) = 0;

    /// Returns what assistive technology reads of a cell under this title. `shown` is the cell's
    /// text. A disabled table asks for this, too: `shown` is nullopt for a cell that it leaves
    /// blank.
    virtual std::string accessibleCellText(std::string_view title,
                                           std::optional<std::string_view> shown) = 0;
};

/// A table that asks its data source for rows when it draws them. It asks only while it is enabled:
/// a disabled table keeps the cells that it has drawn, leaves the others blank, and asks neither
/// its data source nor its delegate about rows until it is enabled and reloaded. It offers no
/// sorting.
///
/// Thread: the main thread, except `setNeedsDisplay`. Errors: none.
class TableView : public View {
public:
    /// Either may be null; both must stay alive until they are replaced or the table is destroyed.
    /// Without a delegate there is no filter, nothing to type ahead to, and no text for assistive
    /// technology.
    virtual void setDataSource(TableViewDataSource* dataSource, TableViewDelegate* delegate) = 0;

    virtual void setEnabled(bool enabled) = 0;

    /// Requests one redraw; requests that arrive before it happens are merged.
    /// Thread: any; never waits for the main thread.
    virtual void setNeedsDisplay() = 0;

    /// Asks for the number of rows now and for the cells when they are drawn.
    virtual void reloadData() = 0;

    /// The selected row that has the keyboard focus, if any.
    virtual std::optional<std::size_t> selectedRow() const = 0;

    /// Selects this row alone and scrolls to it, and to all rows that belong together with it if
    /// they fit; closes a filter that hides it.
    virtual void selectRow(std::size_t row) = 0;

    /// Passes the data source an edit of this column for every selected row that is not in that
    /// state yet, then notifies the delegate. Rows that a filter hides are not selected. Rows that
    /// it did not find itself are edited only when no other one is selected.
    virtual void editSelectedRows(std::string_view column, CheckState state) = 0;

    /// The same for every row, or for every one that the filter found.
    virtual void editShownRows(std::string_view column, CheckState state) = 0;

    /// Whether the row exists and no filter hides it.
    virtual bool showsRow(std::size_t row) const = 0;

    /// Opens the filter: the table shows only rows that contain what the user types and, in a
    /// quieter colour, those that belong together with them. Check marks do not change.
    virtual void beginFiltering() = 0;

    /// Closes the filter, so that every row is shown.
    virtual void endFiltering() = 0;

    /// Asks the delegate for the filter again, whose rule has changed. An open filter stays open.
    virtual void refilter() = 0;
};

}  // namespace dunmora
