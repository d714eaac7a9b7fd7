#pragma once

#include "adapters/qt/CheckBoxClicks.h"
#include "adapters/qt/RowCopy.h"
#include "adapters/qt/RowSearch.h"
#include "adapters/qt/TableCellDelegate.h"
#include "adapters/qt/TableColumnWidths.h"
#include "adapters/qt/TableFilterBar.h"
#include "adapters/qt/TableFocus.h"
#include "adapters/qt/TableModel.h"
#include "adapters/qt/TableSelection.h"
#include "platform/TableView.h"

#include <QObject>
#include <QPointer>
#include <QTableView>

#include <atomic>
#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

namespace dunmora {

/// The review table on a `QTableView` of an interface file.
///
/// Thread: the main thread, except `setNeedsDisplay`. Errors: none.
class QtTableView final : public QObject, public TableView {
public:
    /// The widgets may be destroyed first. The bar and the line are null for a table without a
    /// filter.
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
    void editShownRows(std::string_view column, CheckState state) override;
    bool showsRow(std::size_t row) const override;
    void beginFiltering() override;
    void endFiltering() override;
    void refilter() override;

    /// As in `TableColumnWidths`.
    void setChosenWidths(ColumnWidths widths) { widths_.setChosen(std::move(widths)); }
    void onChosenWidths(std::function<void(const ColumnWidths&)> handler)
    {
        widths_.onChosen(std::move(handler));
    }

private:
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool keyPressed(const QKeyEvent& key);
    void metricsChanged();

    void toggleCheckBox(const QModelIndex& index);
    void toggleSelectedRows();
    void copySelectedRows();
    void edit(std::span<const std::size_t> sourceRows, std::string_view column, bool isChecked);
    void redraw();
    /// Scrolls to a row and, if they fit, to all that belong together with it.
    void scrollTo(std::size_t sourceRow);

    void filterTyped();
    void filterLeft();
    void showFound(const ShownRows::SourceRows& rows);
    void showAll();
    void showCount();
    void selectionChanged();
    void selectedRowChanged();

    QPointer<QTableView> widget_;
    TableViewDataSource* dataSource_ = nullptr;
    bool isEnabled_ = true;
    std::atomic<bool> needsDisplay_ = false;
    bool isSelectedRowChanged_ = false;

    TableModel model_;
    TableCellDelegate delegate_;
    TableColumnWidths widths_;
    TableSelection selection_;
    CheckBoxClicks clicks_;
    TableFilterBar filterBar_;
    TableFocus focus_;
    // They use the members above, so they are destroyed before them.
    RowSearch search_;
    RowCopy copy_;
};

}  // namespace dunmora
