#pragma once

#include "platform/TableView.h"

#include <QIcon>
#include <QStyledItemDelegate>

class QTableView;

namespace dunmora {

class TableModel;
struct DrawnRow;

/// Draws the cells of a table: one line of text each, the bands and lines of the groups, check
/// boxes with the sign of a warning beside them. The user edits nothing through it; clicks on check
/// boxes are the table's.
///
/// Thread: the main thread. Errors: none.
class TableCellDelegate final : public QStyledItemDelegate {
public:
    /// Both must outlive the delegate.
    TableCellDelegate(const QTableView& table, const TableModel& model);

    /// The height that every row has with the table's font and style.
    int rowHeight() const;
    /// What a check box with a warning's sign beside it takes.
    int checkColumnWidth() const;
    /// What stands to the left and to the right of a text in its cell.
    int textMargins() const;

    /// Where a click marks the row: the check box and what is close to it, in the viewport.
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
};

}  // namespace dunmora
