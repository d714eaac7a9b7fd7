#include "adapters/qt/QtTableView.h"

#include <QAccessible>
#include <QGuiApplication>
#include <QHeaderView>
#include <QItemSelectionModel>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScopedValueRollback>

#include <algorithm>
#include <array>
#include <utility>

namespace dunmora {

namespace {

/// Qt keeps the selection as ranges and looks through all of them for each cell that it draws; with
/// more than these, scrolling would stutter.
constexpr qsizetype kMaxSelectedRanges = 4'000;

constexpr auto kSelectRows = QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows;

}  // namespace

QtTableView::QtTableView(QTableView& widget, QWidget* filterBar, QLineEdit* filterLine)
    : widget_(&widget),
      isEnabled_(widget.isEnabled()),
      model_(columnsOf(widget)),
      delegate_(widget, model_),
      widths_(widget, model_, delegate_),
      filterBar_(filterBar, filterLine,
                 {[this] { filterTyped(); }, [this] { filterLeft(); }, [this] { endFiltering(); }}),
      search_(model_, [this](TableModel::SourceRows rows) { showFound(std::move(rows)); })
{
    configure();
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
    takeFreeFocus();
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
    model_.setDataSource(dataSource, delegate);
}

void QtTableView::setEnabled(bool enabled)
{
    if (enabled == isEnabled_ || widget_ == nullptr) {
        return;
    }
    isEnabled_ = enabled;
    auto& window = *widget_->window();
    if (!enabled) {
        model_.freeze();
        search_.reset();
        const bool hadFocus =
            widget_->hasFocus() || window.focusWidget() == widget_ || filterBar_.hasFocus();
        focusBefore_ = hadFocus ? window.focusWidget() : nullptr;
    }
    widget_->setEnabled(enabled);
    filterBar_.setEnabled(enabled);
    if (!enabled) {
        focusMeanwhile_ = window.focusWidget();
    } else if (focusBefore_ != nullptr && window.focusWidget() == focusMeanwhile_) {
        // Nobody has led the keyboard elsewhere since it was taken away.
        focusBefore_->setFocus(Qt::OtherFocusReason);
        focusBefore_.clear();
    }
    takeFreeFocus();
}

void QtTableView::reloadData()
{
    if (widget_ == nullptr) {
        return;
    }
    search_.reset();
    pressed_ = QModelIndex();
    const bool hadSelection = widget_->selectionModel()->hasSelection();
    model_.reload(isEnabled_);
    widths_.rowsChanged();
    if (hadSelection) {
        selectionChanged();
    }
    filterTyped();
}

std::optional<std::size_t> QtTableView::selectedRow() const
{
    if (widget_ == nullptr) {
        return std::nullopt;
    }
    const auto current = widget_->currentIndex();
    const bool isSelected = current.isValid() && widget_->selectionModel()->isSelected(current);
    return isSelected ? std::optional(model_.sourceRow(current.row())) : std::nullopt;
}

void QtTableView::selectRow(std::size_t row)
{
    if (widget_ == nullptr || row >= model_.sourceRowCount()) {
        return;
    }
    search_.finish();
    if (!model_.rowOf(row)) {
        endFiltering();
    }
    const auto index =
        model_.index(*model_.rowOf(row), std::max(widget_->currentIndex().column(), 0));
    widget_->setCurrentIndex(index);
    // What the keyboard's modifiers would make of it is not meant.
    widget_->selectionModel()->select(index, kSelectRows);
    widget_->scrollTo(index);
    takeFocus();
}

void QtTableView::editSelectedRows(std::string_view column, CheckState state)
{
    if (state != CheckState::Mixed) {
        edit(selectedSourceRows(), column, state == CheckState::On);
    }
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
    if (model_.shownRows()) {
        keepingSelection([this] { model_.showAll(); });
    }
    if (hadFocus) {
        takeFocus();
    }
}

bool QtTableView::eventFilter(QObject* watched, QEvent* event)
{
    switch (event->type()) {
    case QEvent::FontChange:
    case QEvent::StyleChange:
    case QEvent::PaletteChange:
        if (watched == widget_) {
            metricsChanged();
        }
        break;
    case QEvent::KeyPress:
        return watched == widget_ && keyPressed(static_cast<const QKeyEvent&>(*event));
    case QEvent::Paint:
        model_.beginDrawing();
        break;
    case QEvent::Resize:
        if (watched != widget_) {
            widths_.fit();
        }
        break;
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick:
        return watched != widget_ && mousePressed(static_cast<const QMouseEvent&>(*event));
    case QEvent::MouseButtonRelease:
        return watched != widget_ && mouseReleased(static_cast<const QMouseEvent&>(*event));
    case QEvent::MouseMove:
        // A check box that is held down is not the beginning of a selection.
        return pressed_.isValid();
    default:
        break;
    }
    return QObject::eventFilter(watched, event);
}

bool QtTableView::keyPressed(const QKeyEvent& key)
{
    const auto modifiers = key.modifiers() & ~Qt::KeypadModifier;
    if (key.key() == Qt::Key_Home || key.key() == Qt::Key_End) {
        moveToEnd(key.key() == Qt::Key_Home ? End::First : End::Last,
                  modifiers.testFlag(Qt::ShiftModifier) ? Move::Extends : Move::Selects);
        return true;
    }
    if (key.key() == Qt::Key_Space && modifiers == Qt::NoModifier &&
        widget_->selectionModel()->hasSelection()) {
        toggleSelectedRows();
        return true;
    }
    return false;
}

bool QtTableView::mousePressed(const QMouseEvent& mouse)
{
    pressed_ = QModelIndex();
    if (mouse.button() != Qt::LeftButton || mouse.modifiers() != Qt::NoModifier) {
        return false;
    }
    const auto index = widget_->indexAt(mouse.position().toPoint());
    if (!index.isValid() || !delegate_.checkBoxArea(index).contains(mouse.position().toPoint())) {
        return false;
    }
    pressed_ = index;
    widget_->selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    return true;
}

bool QtTableView::mouseReleased(const QMouseEvent& mouse)
{
    if (mouse.button() != Qt::LeftButton || !pressed_.isValid()) {
        return false;
    }
    const QModelIndex index = std::exchange(pressed_, QPersistentModelIndex());
    if (delegate_.checkBoxArea(index).contains(mouse.position().toPoint())) {
        const std::array sourceRows{model_.sourceRow(index.row())};
        const auto& column = model_.columns()[static_cast<std::size_t>(index.column())].identifier;
        edit(sourceRows, column, !model_.isChecked(sourceRows.front(), column));
    }
    return true;
}

void QtTableView::configure()
{
    auto& view = *widget_;
    view.setSelectionBehavior(QAbstractItemView::SelectRows);
    view.setSelectionMode(QAbstractItemView::ExtendedSelection);
    view.setEditTriggers(QAbstractItemView::NoEditTriggers);
    view.setTabKeyNavigation(false);
    view.setDragDropMode(QAbstractItemView::NoDragDrop);
    view.setSortingEnabled(false);
    view.setShowGrid(false);
    view.setWordWrap(false);
    view.setTextElideMode(Qt::ElideRight);
    view.setCornerButtonEnabled(false);
    view.setAlternatingRowColors(false);
    view.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    view.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);

    auto& header = *view.horizontalHeader();
    header.setSectionsClickable(false);
    header.setSectionsMovable(false);
    header.setHighlightSections(false);
    header.setStretchLastSection(false);
    header.setCascadingSectionResizes(false);
    header.setSectionResizeMode(QHeaderView::Interactive);
    // A double click on a header's edge measures what is in view, not a thousand rows.
    header.setResizeContentsPrecision(0);

    auto& rows = *view.verticalHeader();
    rows.hide();
    rows.setSectionResizeMode(QHeaderView::Fixed);

    view.setItemDelegate(&delegate_);
    view.setModel(&model_);
    connect(view.selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { selectionChanged(); });
    connect(view.selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& current) {
                if (!QGuiApplication::keyboardModifiers().testFlag(Qt::ShiftModifier)) {
                    anchor_ = current;
                }
            });
    connect(
        &header, &QHeaderView::sectionResized, this,
        [this](int section, int /*before*/, int width) { widths_.sectionResized(section, width); });
    connect(&model_, &QAbstractItemModel::dataChanged, this, [this] { redraw(); });
    view.installEventFilter(this);
    view.viewport()->installEventFilter(this);
    metricsChanged();
}

void QtTableView::metricsChanged()
{
    auto& rows = *widget_->verticalHeader();
    const int height = delegate_.rowHeight();
    rows.setMinimumSectionSize(height);
    rows.setMaximumSectionSize(height);
    rows.setDefaultSectionSize(height);
    widget_->horizontalHeader()->setMinimumSectionSize(
        2 * (widget_->fontMetrics().averageCharWidth() + delegate_.textMargins()));
    widths_.metricsChanged();
}

void QtTableView::moveToEnd(End end, Move move)
{
    const int rows = model_.rowCount();
    if (rows == 0) {
        return;
    }
    const auto current = widget_->currentIndex();
    const auto target =
        model_.index(end == End::First ? 0 : rows - 1, std::max(current.column(), 0));
    auto& selection = *widget_->selectionModel();
    if (move == Move::Extends && anchor_.isValid()) {
        const QPersistentModelIndex anchor = anchor_;
        selection.setCurrentIndex(target, QItemSelectionModel::NoUpdate);
        selection.select(QItemSelection(std::min<QModelIndex>(anchor, target),
                                        std::max<QModelIndex>(anchor, target)),
                         kSelectRows);
        anchor_ = anchor;
    } else {
        widget_->setCurrentIndex(target);
        selection.select(target, kSelectRows);
    }
    widget_->scrollTo(target);
}

void QtTableView::toggleSelectedRows()
{
    if (!model_.checkColumn()) {
        return;
    }
    const auto& column =
        model_.columns()[static_cast<std::size_t>(*model_.checkColumn())].identifier;
    const auto rows = selectedSourceRows();
    const bool areAllChecked =
        std::all_of(rows.begin(), rows.end(),
                    [this, &column](std::size_t row) { return model_.isChecked(row, column); });
    edit(rows, column, !areAllChecked);
}

void QtTableView::edit(std::span<const std::size_t> sourceRows, std::string_view column,
                       bool isChecked)
{
    if (!model_.isAsking()) {
        return;
    }
    model_.edit(sourceRows, column, isChecked);
    redraw();
    announceMarks(sourceRows, column);
}

void QtTableView::announceMarks(std::span<const std::size_t> sourceRows, std::string_view column)
{
    const auto check = model_.checkColumn();
    if (!QAccessible::isActive() || widget_ == nullptr || !check ||
        model_.columns()[static_cast<std::size_t>(*check)].identifier != column) {
        return;
    }
    // Nobody reads what is out of view, and all of a big table would take its time.
    const int first = std::max(widget_->rowAt(0), 0);
    const int afterLast = widget_->rowAt(widget_->viewport()->height() - 1);
    const int last = afterLast < 0 ? model_.rowCount() - 1 : afterLast;
    for (int row = first; row <= last; ++row) {
        if (!std::binary_search(sourceRows.begin(), sourceRows.end(), model_.sourceRow(row))) {
            continue;
        }
        // Qt counts the headers, shown or not, as the first row and the first column.
        const int child = (row + 1) * (model_.columnCount() + 1) + *check + 1;
        QAccessible::State changed;
        changed.checked = true;
        QAccessibleStateChangeEvent state(widget_, changed);
        state.setChild(child);
        QAccessible::updateAccessibility(&state);
        QAccessibleEvent name(widget_, QAccessible::NameChanged);
        name.setChild(child);
        QAccessible::updateAccessibility(&name);
    }
}

void QtTableView::redraw()
{
    model_.refresh();
    if (widget_ != nullptr) {
        widget_->viewport()->update();
    }
}

void QtTableView::filterTyped()
{
    RowFilter filter(filterBar_.text());
    if (!model_.isAsking()) {
        showCount();
        return;
    }
    if (filter.isEmpty()) {
        search_.reset();
        if (model_.shownRows()) {
            keepingSelection([this] { model_.showAll(); });
        }
        showCount();
        return;
    }
    search_.start(std::move(filter));
}

void QtTableView::filterLeft()
{
    search_.finish();
    if (!widget_->selectionModel()->hasSelection() && model_.rowCount() > 0) {
        const auto first = model_.index(0, 0);
        widget_->setCurrentIndex(first);
        widget_->selectionModel()->select(first, kSelectRows);
    }
    takeFocus();
}

void QtTableView::showFound(TableModel::SourceRows rows)
{
    keepingSelection([this, &rows] { model_.showOnly(std::move(rows)); });
    showCount();
}

void QtTableView::showCount()
{
    filterBar_.showCount(static_cast<std::size_t>(model_.rowCount()), model_.sourceRowCount());
}

template <typename Change>
void QtTableView::keepingSelection(Change change)
{
    const auto before = selectedSourceRows();
    const auto currentIndex = widget_->currentIndex();
    const auto current =
        currentIndex.isValid() ? std::optional(model_.sourceRow(currentIndex.row())) : std::nullopt;
    {
        const QScopedValueRollback guard(isKeepingSelection_, true);
        pressed_ = QModelIndex();
        change();
        select(before, current, currentIndex.column());
    }
    if (selectedSourceRows() != before) {
        selectionChanged();
    }
}

std::vector<std::size_t> QtTableView::selectedSourceRows() const
{
    std::vector<std::size_t> rows;
    if (widget_ == nullptr) {
        return rows;
    }
    for (const auto& range : widget_->selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            rows.push_back(model_.sourceRow(row));
        }
    }
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

void QtTableView::select(const std::vector<std::size_t>& sourceRows,
                         std::optional<std::size_t> current, int column)
{
    QItemSelection selection;
    const int lastColumn = model_.columnCount() - 1;
    int first = 0;
    int next = 0;  // The run of shown rows goes from the first to the one before this.
    const auto endRun = [&] {
        if (first < next) {
            selection.append(
                QItemSelectionRange(model_.index(first, 0), model_.index(next - 1, lastColumn)));
        }
    };
    for (const auto sourceRow : sourceRows) {
        if (const auto row = model_.rowOf(sourceRow)) {
            if (*row != next) {
                endRun();
                first = *row;
            }
            next = *row + 1;
        }
    }
    endRun();
    auto& model = *widget_->selectionModel();
    if (selection.size() <= kMaxSelectedRanges) {
        model.select(selection, QItemSelectionModel::ClearAndSelect);
    }
    if (!current || model_.rowCount() == 0) {
        return;
    }
    // A hidden row leaves the keyboard with the one that stands in its place.
    const int row = std::min(model_.firstRowFrom(*current), model_.rowCount() - 1);
    const auto index = model_.index(row, column);
    model.setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    anchor_ = index;
    widget_->scrollTo(index);
}

void QtTableView::selectionChanged()
{
    if (!isKeepingSelection_ && dataSource_ != nullptr && isEnabled_) {
        dataSource_->tableViewSelectionDidChange();
    }
}

void QtTableView::takeFocus()
{
    if (widget_ != nullptr) {
        widget_->setFocus(Qt::OtherFocusReason);
    }
}

void QtTableView::takeFreeFocus()
{
    if (widget_ == nullptr || widget_->isHidden() || !isEnabled_) {
        return;
    }
    const auto& window = *widget_->window();
    const auto* const focused = window.focusWidget();
    // A window that was left and came back while its table was hidden names the table, and has
    // none.
    const bool isFree = focused == nullptr || focused == &window || focused == widget_ ||
                        !focused->isVisibleTo(&window) || !focused->isEnabled();
    if (isFree) {
        takeFocus();
    }
}

}  // namespace dunmora
