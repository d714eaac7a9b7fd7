#pragma once

#include "adapters/qt/RowSearch.h"
#include "adapters/qt/TableCellDelegate.h"
#include "adapters/qt/TableColumnWidths.h"
#include "adapters/qt/TableFilterBar.h"
#include "adapters/qt/TableModel.h"
#include "platform/TableView.h"

#include <QObject>
#include <QPersistentModelIndex>
#include <QPointer>
#include <QTableView>

#include <atomic>
#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace dunmora {

/// The review table on a `QTableView` of an interface file, which names the columns in its
/// properties `columnIdentifiers` and `columnTitles`.
///
/// Thread: the main thread, but for `setNeedsDisplay`. Errors: none.
class QtTableView final : public QObject, public TableView {
public:
    /// The widgets may be deleted before this. A table that has no filter has no bar and no line.
    QtTableView(QTableView& widget, QWidget* filterBar, QLineEdit* filterLine);
    ~QtTableView() override;
    QtTableView(const QtTableView&) = delete;
    QtTableView& operator=(const QtTableView&) = delete;

    void setHidden(bool hidden) override;
    void setNeedsDisplay() override;

    void setDataSource(TableViewDataSource* dataSource, TableViewDelegate* delegate) override;
    void setEnabled(bool enabled) override;
    void reloadData() override;
    std::optional<std::size_t> selectedRow() const override;
    void selectRow(std::size_t row) override;
    void editSelectedRows(std::string_view column, CheckState state) override;
    void beginFiltering() override;
    void endFiltering() override;

private:
    /// Which end of the table a key leads to.
    enum class End { First, Last };
    /// What happens to the selection on the way.
    enum class Move { Selects, Extends };

    bool eventFilter(QObject* watched, QEvent* event) override;
    bool keyPressed(const QKeyEvent& key);
    bool mousePressed(const QMouseEvent& mouse);
    bool mouseReleased(const QMouseEvent& mouse);
    void configure();
    void metricsChanged();

    void moveToEnd(End end, Move move);
    void toggleSelectedRows();
    void edit(std::span<const std::size_t> sourceRows, std::string_view column, bool isChecked);
    /// Lets assistive technology know that the check marks of these rows are others now.
    void announceMarks(std::span<const std::size_t> sourceRows, std::string_view column);
    void redraw();

    void filterTyped();
    void filterLeft();
    void showFound(TableModel::SourceRows rows);
    void showCount();
    /// Changes which rows are shown, and keeps those of them selected that were.
    template <typename Change>
    void keepingSelection(Change change);
    std::vector<std::size_t> selectedSourceRows() const;
    void select(const std::vector<std::size_t>& sourceRows, std::optional<std::size_t> current,
                int column);
    void selectionChanged();
    void takeFocus();
    /// Takes the keyboard where nobody in the window has it.
    void takeFreeFocus();

    QPointer<QTableView> widget_;
    TableViewDataSource* dataSource_ = nullptr;
    bool isEnabled_ = true;
    std::atomic<bool> needsDisplay_ = false;
    /// A change of the shown rows makes a selection that is not the user's.
    bool isKeepingSelection_ = false;
    /// The row that the keyboard extends the selection from.
    QPersistentModelIndex anchor_;
    /// The check box on which the mouse went down.
    QPersistentModelIndex pressed_;
    /// Who had the keyboard when the table was disabled, and who got it then.
    QPointer<QWidget> focusBefore_;
    QPointer<QWidget> focusMeanwhile_;

    TableModel model_;
    TableCellDelegate delegate_;
    TableColumnWidths widths_;
    TableFilterBar filterBar_;
    /// Asks the model and tells the members above, so it goes first.
    RowSearch search_;
};

}  // namespace dunmora
