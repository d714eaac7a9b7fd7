#pragma once

#include "platform/TableView.h"

#include <QIcon>
#include <QStyledItemDelegate>

class QTableView;

namespace dunmora {

class TableModel;
struct DrawnRow;

/// Draws the cells of a table: one line of text each, the backgrounds and lines of the groups, and
/// check boxes with the icon of a warning beside them. It edits nothing; `CheckBoxClicks` handles
/// clicks on check boxes.
///
/// Thread: the main thread. Errors: none.
class TableCellDelegate final : public QStyledItemDelegate {
public:
    /// Both must outlive the delegate.
    TableCellDelegate(const QTableView& table, const TableModel& model);

    /// The height of every row in the table's font and style.
    int rowHeight() const;
    /// The width of a check box with a warning's icon beside it.
    int checkColumnWidth() const;
    /// The space to the left and to the right of a cell's text, together.
    int textMargins() const;

    /// Where a click toggles the row's check mark, in the viewport: the check box and a margin.
    QRect checkBoxArea(const QModelIndex& index) const;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    bool editorEvent(QEvent* event, QAbstractItemModel* model, const QStyleOptionViewItem& option,
                     const QModelIndex& index) override;
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;

private:
    QStyleOptionViewItem cell(const QStyleOptionViewItem& base, const QModelIndex& index,
                              const DrawnRow& drawn) const;
    const QIcon& iconOf(RowStyle::Warning::Sign sign) const;

    const QTableView& table_;
    const TableModel& model_;
    QIcon doubt_;
    QIcon loss_;
    QIcon only_;
};

}  // namespace dunmora
