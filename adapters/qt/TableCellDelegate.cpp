#include "adapters/qt/TableCellDelegate.h"

#include "adapters/qt/Colors.h"
#include "adapters/qt/OneLineText.h"
#include "adapters/qt/Symbols.h"
#include "adapters/qt/TableModel.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QTableView>
#include <QToolTip>

#include <algorithm>

namespace dunmora {

namespace {

/// The share of the text's colour in the background of every other group: enough to see the
/// difference from the base colour.
constexpr double kBand = 0.06;
/// Stays visible on the base colour even after a style has darkened it.
constexpr double kOutline = 0.6;
/// Gives a line three times, or a third of, the luminance of its background.
constexpr double kLine = 0.45;

QPalette::ColorGroup colorGroup(const QStyleOptionViewItem& option)
{
    if (!option.state.testFlag(QStyle::State_Enabled)) {
        return QPalette::Disabled;
    }
    return option.state.testFlag(QStyle::State_Active) ? QPalette::Active : QPalette::Inactive;
}

/// Returns no more of the text than fits in the width, so that Qt does not lay out the rest.
QString visiblePart(const QString& text, int width)
{
    constexpr int kLeastCharacters = 64;
    return text.left(std::max(width, kLeastCharacters));
}

}  // namespace

TableCellDelegate::TableCellDelegate(const QTableView& table, const TableModel& model)
    : table_(table),
      model_(model),
      doubt_(symbolIcon(QStringLiteral("doubt"))),
      loss_(symbolIcon(QStringLiteral("loss"))),
      only_(symbolIcon(QStringLiteral("only")))
{
}

int TableCellDelegate::rowHeight() const
{
    const auto* style = table_.style();
    const int content = std::max({table_.fontMetrics().height(),
                                  style->pixelMetric(QStyle::PM_IndicatorHeight, nullptr, &table_),
                                  style->pixelMetric(QStyle::PM_SmallIconSize, nullptr, &table_)});
    // The spacing grows with the font.
    return content + std::max(table_.fontMetrics().height() / 2, textMargins());
}

int TableCellDelegate::checkColumnWidth() const
{
    const auto* style = table_.style();
    return style->pixelMetric(QStyle::PM_IndicatorWidth, nullptr, &table_) +
           style->pixelMetric(QStyle::PM_SmallIconSize, nullptr, &table_) + 2 * textMargins();
}

int TableCellDelegate::textMargins() const
{
    return 2 * (table_.style()->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, &table_) + 1);
}

QRect TableCellDelegate::checkBoxArea(const QModelIndex& index) const
{
    const auto* drawn = model_.drawnRow(index.row());
    if (drawn == nullptr || index.column() != model_.checkColumn()) {
        return {};
    }
    QStyleOptionViewItem option;
    option.initFrom(&table_);
    option.rect = table_.visualRect(index);
    const auto box = table_.style()->subElementRect(
        QStyle::SE_ItemViewItemCheckIndicator, &(option = cell(option, index, *drawn)), &table_);
    const int margin = textMargins() / 2;
    return QRect(box.left(), option.rect.top(), box.width(), option.rect.height())
        .adjusted(-margin, 0, margin, 0)
        .intersected(option.rect);
}

void TableCellDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                              const QModelIndex& index) const
{
    const auto* drawn = model_.drawnRow(index.row());
    if (drawn == nullptr) {
        return;
    }
    const auto& palette = option.palette;
    const auto group = colorGroup(option);
    const auto base = palette.color(group, QPalette::Base);
    const auto ink = palette.color(group, QPalette::Text);

    painter->save();
    // Letters may be taller than their line; do not draw beyond the cell.
    painter->setClipRect(option.rect, Qt::IntersectClip);
    auto shown = cell(option, index, *drawn);
    if (drawn->style.group % 2 == 1) {
        shown.backgroundBrush = mixed(base, ink, kBand);
    }
    const bool hasFocus = shown.state.testFlag(QStyle::State_HasFocus);
    shown.state.setFlag(QStyle::State_HasFocus, false);
    table_.style()->drawControl(QStyle::CE_ItemViewItem, &shown, painter, &table_);
    if (drawn->beginsGroup) {
        painter->fillRect(option.rect.left(), option.rect.top(), option.rect.width(), 1,
                          mixed(base, ink, kLine));
    }
    if (hasFocus) {
        // Styles barely mark the focused cell, but here it shows which row Space toggles.
        const bool isSelected = option.state.testFlag(QStyle::State_Selected);
        painter->setPen(isSelected ? palette.color(group, QPalette::HighlightedText) : ink);
        painter->setBrush(Qt::NoBrush);
        painter->drawRect(option.rect.adjusted(1, 1, -2, -2));
    }
    painter->restore();
}

QSize TableCellDelegate::sizeHint(const QStyleOptionViewItem& option,
                                  const QModelIndex& index) const
{
    if (index.column() == model_.checkColumn()) {
        return {checkColumnWidth(), rowHeight()};
    }
    const auto* drawn = model_.drawnRow(index.row());
    const auto text = drawn == nullptr
                          ? QString()
                          : TableModel::shownText(*drawn, static_cast<std::size_t>(index.column()));
    return {option.fontMetrics.horizontalAdvance(text) + textMargins(), rowHeight()};
}

bool TableCellDelegate::editorEvent(QEvent* /*event*/, QAbstractItemModel* /*model*/,
                                    const QStyleOptionViewItem& /*option*/,
                                    const QModelIndex& /*index*/)
{
    return false;
}

bool TableCellDelegate::helpEvent(QHelpEvent* event, QAbstractItemView* view,
                                  const QStyleOptionViewItem& option, const QModelIndex& index)
{
    if (event->type() != QEvent::ToolTip || !index.isValid()) {
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    }
    QStringList paragraphs;
    if (const auto* drawn = model_.drawnRow(index.row())) {
        const auto& text = TableModel::shownText(*drawn, static_cast<std::size_t>(index.column()));
        const int width = table_.fontMetrics().horizontalAdvance(text) + textMargins();
        if (width > table_.visualRect(index).width()) {
            paragraphs << text;
        }
        paragraphs << model_.wholeWarning(index.row());
    }
    // An empty text hides the tool tip of another cell.
    QToolTip::showText(event->globalPos(), toolTipText(paragraphs), view->viewport(),
                       table_.visualRect(index));
    return true;
}

QStyleOptionViewItem TableCellDelegate::cell(const QStyleOptionViewItem& base,
                                             const QModelIndex& index, const DrawnRow& drawn) const
{
    auto option = base;
    option.index = index;
    option.textElideMode = Qt::ElideRight;
    option.displayAlignment = Qt::AlignLeading | Qt::AlignVCenter;
    option.features.setFlag(QStyleOptionViewItem::WrapText, false);
    if (model_.rows().isCompanion(index.row())) {
        option.palette.setColor(QPalette::Text,
                                mixed(option.palette.color(QPalette::Base),
                                      option.palette.color(QPalette::Text), kQuiet));
    }
    if (index.column() == model_.checkColumn()) {
        option.features |= QStyleOptionViewItem::HasCheckIndicator;
        option.checkState = drawn.isChecked ? Qt::Checked : Qt::Unchecked;
        option.state |= drawn.isChecked ? QStyle::State_On : QStyle::State_Off;
        // A style that darkens the window's colour for the outline of a check box would draw it
        // invisibly on a dark background.
        option.palette.setColor(QPalette::Window,
                                mixed(option.palette.color(QPalette::Base),
                                      option.palette.color(QPalette::Text), kOutline));
        const auto& icon = iconOf(drawn.style.warning.sign);
        if (!icon.isNull()) {
            const int size =
                table_.style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, &table_);
            option.features |= QStyleOptionViewItem::HasDecoration;
            option.decorationSize = QSize(size, size);
            option.icon = icon;
        }
    } else {
        const auto column = static_cast<std::size_t>(index.column());
        option.features |= QStyleOptionViewItem::HasDisplay;
        option.text = visiblePart(TableModel::shownText(drawn, column), option.rect.width());
        if (TableModel::isSubstitute(drawn, column) ||
            model_.columns()[column].kind == TableColumn::Kind::Note) {
            const auto ink = option.palette.color(QPalette::Text);
            option.palette.setColor(QPalette::Text,
                                    mixed(option.palette.color(QPalette::Base), ink, kQuiet));
        }
    }
    return option;
}

const QIcon& TableCellDelegate::iconOf(RowStyle::Warning::Sign sign) const
{
    static const QIcon none;
    switch (sign) {
    case RowStyle::Warning::Sign::Doubt:
        return doubt_;
    case RowStyle::Warning::Sign::Loss:
        return loss_;
    case RowStyle::Warning::Sign::OnlyHere:
        return only_;
    case RowStyle::Warning::Sign::None:
        break;
    }
    return none;
}

}  // namespace dunmora
