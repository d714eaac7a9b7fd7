#include "adapters/qt/QtTableView.h"

#include "adapters/qt/TableAnnouncement.h"
#include "adapters/qt/TableSetup.h"

#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QMouseEvent>

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace dunmora {

QtTableView::QtTableView(QTableView& widget, QWidget* filterBar, QLineEdit* filterLine)
    : widget_(&widget),
      isEnabled_(widget.isEnabled()),
      delegate_(widget, model_),
      widths_(widget, model_, delegate_),
      selection_(widget, model_, [this] { selectionChanged(); }),
      clicks_(widget, delegate_, [this](const QModelIndex& index) { toggleCheckBox(index); }),
      filterBar_(filterBar, filterLine,
                 {[this] { filterTyped(); }, [this] { filterLeft(); }, [this] { endFiltering(); }}),
      focus_(widget, filterBar_),
      search_(model_.rows(), [this](const ShownRows::SourceRows& rows) { showFound(rows); }),
      copy_(model_)
{
    setUpTable(widget);
    widget.setItemDelegate(&delegate_);
    connect(
        widget.horizontalHeader(), &QHeaderView::sectionResized, this,
        [this](int section, int /*before*/, int width) { widths_.sectionResized(section, width); });
    connect(widget.selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this] { selectedRowChanged(); });
    connect(&model_, &QAbstractItemModel::dataChanged, this, [this] { redraw(); });
    widget.installEventFilter(this);
    widget.viewport()->installEventFilter(this);
    metricsChanged();
}

QtTableView::~QtTableView()
{
    if (widget_ != nullptr) {
        widget_->disconnect(this);
        widget_->setModel(nullptr);
        widget_->setItemDelegate(nullptr);
    }
}

void QtTableView::setHidden(bool hidden)
{
    if (widget_ != nullptr) {
        widget_->setHidden(hidden);
    }
    filterBar_.setTableHidden(hidden);
    focus_.takeIfFree();
}

void QtTableView::setNeedsDisplay()
{
    if (!needsDisplay_.exchange(true)) {
        QMetaObject::invokeMethod(
            this,
            [this] {
                needsDisplay_ = false;
                redraw();
            },
            Qt::QueuedConnection);
    }
}

void QtTableView::setDataSource(TableViewDataSource* dataSource, TableViewDelegate* delegate)
{
    dataSource_ = dataSource;
    search_.reset();
    copy_.cancel();
    if (model_.setDataSource(dataSource, delegate) && widget_ != nullptr) {
        widths_.columnsChanged();
    }
}

void QtTableView::setEnabled(bool enabled)
{
    if (enabled == isEnabled_ || widget_ == nullptr) {
        return;
    }
    isEnabled_ = enabled;
    const auto enable = [this, enabled] {
        widget_->setEnabled(enabled);
        filterBar_.setEnabled(enabled);
    };
    if (enabled) {
        enable();
        focus_.restore();
    } else {
        copy_.finish();
        model_.freeze();
        search_.reset();
        focus_.rememberDuring(enable);
    }
    focus_.takeIfFree();
}

void QtTableView::reloadData()
{
    if (widget_ == nullptr) {
        return;
    }
    search_.reset();
    copy_.cancel();
    clicks_.cancel();
    const bool hadSelection = !selection_.isEmpty();
    if (model_.reload(isEnabled_)) {
        widths_.columnsChanged();
    } else {
        widths_.rowsChanged();
    }
    if (hadSelection) {
        selectionChanged();
    }
    filterTyped();
}

std::optional<std::size_t> QtTableView::selectedRow() const
{
    return selection_.currentSourceRow();
}

void QtTableView::selectRow(std::size_t row)
{
    if (widget_ == nullptr || row >= model_.rows().sourceRowCount()) {
        return;
    }
    search_.finish();
    if (!model_.rows().rowOf(row)) {
        endFiltering();
        search_.finish();
    }
    if (!model_.rows().rowOf(row)) {
        // The delegate's own filter hides it, too.
        showAll();
    }
    selection_.select(*model_.rows().rowOf(row));
    scrollTo(row);
    focus_.take();
}

void QtTableView::editSelectedRows(std::string_view column, CheckState state)
{
    if (state != CheckState::Mixed) {
        edit(selection_.sourceRowsToEdit(), column, state == CheckState::On);
    }
}

void QtTableView::editShownRows(std::string_view column, CheckState state)
{
    search_.finish();
    std::vector<std::size_t> sourceRows;
    sourceRows.reserve(model_.rows().foundCount());
    for (int row = 0; row < model_.rows().count(); ++row) {
        if (!model_.rows().isCompanion(row)) {
            sourceRows.push_back(model_.rows().sourceRow(row));
        }
    }
    if (state != CheckState::Mixed) {
        edit(sourceRows, column, state == CheckState::On);
    }
}

bool QtTableView::showsRow(std::size_t row) const
{
    return row < model_.rows().sourceRowCount() && model_.rows().rowOf(row).has_value();
}

void QtTableView::beginFiltering()
{
    if (!isEnabled_) {
        return;
    }
    filterBar_.open();
    showCount();
}

void QtTableView::endFiltering()
{
    const bool hadFocus = filterBar_.hasFocus();
    filterBar_.close();
    search_.reset();
    if (model_.isAsking()) {
        filterTyped();
    } else {
        showAll();
    }
    if (hadFocus) {
        focus_.take();
    }
}

void QtTableView::refilter()
{
    search_.reset();
    filterTyped();
}

bool QtTableView::eventFilter(QObject* watched, QEvent* event)
{
    // Not compared with `widget_`: the viewport sends events while the table is being destroyed.
    const bool isForViewport = qobject_cast<QTableView*>(watched) == nullptr;
    switch (event->type()) {
    case QEvent::FontChange:
    case QEvent::StyleChange:
    case QEvent::PaletteChange:
        if (!isForViewport) {
            metricsChanged();
        }
        break;
    case QEvent::ShortcutOverride:
        // Otherwise the key would go to a menu's command.
        if (!isForViewport && static_cast<const QKeyEvent*>(event)->matches(QKeySequence::Copy)) {
            event->accept();
            return true;
        }
        break;
    case QEvent::KeyPress:
        return !isForViewport && keyPressed(static_cast<const QKeyEvent&>(*event));
    case QEvent::Paint:
        model_.beginFrame();
        break;
    case QEvent::Resize:
        if (isForViewport) {
            widths_.fit();
        }
        break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        return isForViewport && clicks_.pressed(static_cast<const QMouseEvent&>(*event));
    case QEvent::MouseButtonRelease:
        return isForViewport && clicks_.released(static_cast<const QMouseEvent&>(*event));
    case QEvent::MouseMove:
        return clicks_.isHeld();
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

bool QtTableView::keyPressed(const QKeyEvent& key)
{
    if (key.matches(QKeySequence::Copy)) {
        copySelectedRows();
        return true;
    }
    const auto modifiers = key.modifiers() & ~Qt::KeypadModifier;
    if (key.key() == Qt::Key_Home || key.key() == Qt::Key_End) {
        using End = TableSelection::End;
        using Move = TableSelection::Move;
        selection_.moveToEnd(key.key() == Qt::Key_Home ? End::First : End::Last,
                             modifiers.testFlag(Qt::ShiftModifier) ? Move::Extends : Move::Selects);
        return true;
    }
    if (key.key() == Qt::Key_Space && modifiers == Qt::NoModifier && !selection_.isEmpty()) {
        toggleSelectedRows();
        return true;
    }
    if (key.key() == Qt::Key_F10 && modifiers == Qt::ShiftModifier) {
        // Qt opens the context menu only for the Menu key.
        const auto position = widget_->visualRect(widget_->currentIndex()).center();
        QCoreApplication::postEvent(
            widget_->viewport(), new QContextMenuEvent(QContextMenuEvent::Keyboard, position,
                                                       widget_->viewport()->mapToGlobal(position)));
        return true;
    }
    return false;
}

void QtTableView::metricsChanged()
{
    setTableMetrics(*widget_, delegate_.rowHeight(), delegate_.textMargins());
    widths_.metricsChanged();
}

void QtTableView::toggleCheckBox(const QModelIndex& index)
{
    const std::array sourceRows{model_.rows().sourceRow(index.row())};
    const auto column = model_.columns()[static_cast<std::size_t>(index.column())].identifier;
    edit(sourceRows, column, !model_.isChecked(sourceRows.front(), column));
}

void QtTableView::toggleSelectedRows()
{
    const auto check = model_.checkColumn();
    if (!check) {
        return;
    }
    const auto column = model_.columns()[static_cast<std::size_t>(*check)].identifier;
    const auto rows = selection_.sourceRowsToEdit();
    const bool areAllChecked =
        std::all_of(rows.begin(), rows.end(),
                    [this, column](std::size_t row) { return model_.isChecked(row, column); });
    edit(rows, column, !areAllChecked);
}

void QtTableView::copySelectedRows()
{
    if (model_.isAsking()) {
        copy_.start(selection_.sourceRows());
    }
}

void QtTableView::edit(std::span<const std::size_t> sourceRows, std::string_view column,
                       bool isChecked)
{
    if (!model_.isAsking()) {
        return;
    }
    model_.edit(sourceRows, column, isChecked);
    redraw();
    if (widget_ != nullptr) {
        announceCheckMarks(*widget_, model_, sourceRows);
    }
}

void QtTableView::redraw()
{
    model_.beginFrame();
    if (widget_ != nullptr) {
        widget_->viewport()->update();
    }
}

void QtTableView::scrollTo(std::size_t sourceRow)
{
    const auto& rows = model_.rows();
    const auto together = model_.rowsTogetherWith(sourceRow);
    const int first = rows.firstRowFrom(together.first);
    const int end = rows.firstRowFrom(together.first + together.size);
    // Each step scrolls no further than needed, so the last one decides when not all of them fit.
    for (const int row : {end - 1, first, *rows.rowOf(sourceRow)}) {
        widget_->scrollTo(model_.index(row, std::max(widget_->currentIndex().column(), 0)));
    }
}

void QtTableView::filterTyped()
{
    const auto typed = filterBar_.text();
    if (!model_.isAsking()) {
        showCount();
        return;
    }
    if (auto filter = model_.filter(typed)) {
        search_.start(typed, std::move(filter));
        return;
    }
    search_.reset();
    showAll();
    showCount();
}

void QtTableView::filterLeft()
{
    search_.finish();
    if (selection_.isEmpty() && model_.rowCount() > 0) {
        selection_.select(0);
    }
    focus_.take();
}

void QtTableView::showFound(const ShownRows::SourceRows& rows)
{
    clicks_.cancel();
    selection_.keepDuring([this, &rows] { model_.showOnly(rows); });
    showCount();
}

void QtTableView::showAll()
{
    if (model_.rows().areFiltered()) {
        clicks_.cancel();
        selection_.keepDuring([this] { model_.showAll(); });
    }
}

void QtTableView::showCount()
{
    filterBar_.showCount(model_.countText());
}

void QtTableView::selectionChanged()
{
    if (dataSource_ != nullptr && isEnabled_) {
        dataSource_->tableViewSelectionDidChange();
    }
    selectedRowChanged();
}

void QtTableView::selectedRowChanged()
{
    // Later: Qt reports a new selection before the keyboard focus has moved to it.
    if (!std::exchange(isSelectedRowChanged_, true)) {
        QMetaObject::invokeMethod(
            this,
            [this] {
                isSelectedRowChanged_ = false;
                if (auto* const delegate = model_.delegate()) {
                    delegate->selectedRowDidChange();
                }
            },
            Qt::QueuedConnection);
    }
}

}  // namespace dunmora
