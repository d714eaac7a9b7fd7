#include "adapters/qt/TableSelection.h"

#include "adapters/qt/TableModel.h"

#include <QGuiApplication>
#include <QItemSelectionModel>
#include <QScopedValueRollback>

#include <algorithm>
#include <utility>

namespace dunmora {

namespace {

/// Qt keeps the selection as ranges and searches all of them for each cell that it draws. With more
/// ranges than this, scrolling would stutter.
constexpr qsizetype kMaxSelectedRanges = 4'000;

constexpr auto kSelectRows = QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows;

}  // namespace

TableSelection::TableSelection(QTableView& table, TableModel& model, std::function<void()> changed)
    : table_(&table), model_(model), changed_(std::move(changed))
{
    table.setModel(&model);
    connect(table.selectionModel(), &QItemSelectionModel::selectionChanged, this, [this] {
        if (!isKeeping_) {
            changed_();
        }
    });
    connect(table.selectionModel(), &QItemSelectionModel::currentChanged, this,
            [this](const QModelIndex& current) {
                if (!QGuiApplication::keyboardModifiers().testFlag(Qt::ShiftModifier)) {
                    anchor_ = current;
                }
            });
}

bool TableSelection::isEmpty() const
{
    return table_ == nullptr || !table_->selectionModel()->hasSelection();
}

std::vector<std::size_t> TableSelection::sourceRows() const
{
    std::vector<std::size_t> rows;
    if (table_ == nullptr) {
        return rows;
    }
    for (const auto& range : table_->selectionModel()->selection()) {
        for (int row = range.top(); row <= range.bottom(); ++row) {
            rows.push_back(model_.rows().sourceRow(row));
        }
    }
    // One range is in order, and may be the whole table.
    if (!std::is_sorted(rows.begin(), rows.end())) {
        std::sort(rows.begin(), rows.end());
    }
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    return rows;
}

std::vector<std::size_t> TableSelection::sourceRowsToEdit() const
{
    auto rows = sourceRows();
    const auto isCompanion = [this](std::size_t sourceRow) {
        return model_.rows().isCompanion(*model_.rows().rowOf(sourceRow));
    };
    if (model_.rows().areFiltered() && !std::all_of(rows.begin(), rows.end(), isCompanion)) {
        std::erase_if(rows, isCompanion);
    }
    return rows;
}

std::optional<std::size_t> TableSelection::currentSourceRow() const
{
    if (table_ == nullptr) {
        return std::nullopt;
    }
    const auto current = table_->currentIndex();
    const bool isSelected = current.isValid() && table_->selectionModel()->isSelected(current);
    return isSelected ? std::optional(model_.rows().sourceRow(current.row())) : std::nullopt;
}

void TableSelection::select(int row)
{
    const auto index = model_.index(row, std::max(table_->currentIndex().column(), 0));
    table_->setCurrentIndex(index);
    // setCurrentIndex extends the selection while Shift is held; select this row alone.
    table_->selectionModel()->select(index, kSelectRows);
    table_->scrollTo(index);
}

void TableSelection::moveToEnd(End end, Move move)
{
    const int rows = model_.rowCount();
    if (rows == 0) {
        return;
    }
    const int row = end == End::First ? 0 : rows - 1;
    if (move == Move::Selects || !anchor_.isValid()) {
        select(row);
        return;
    }
    const auto target = model_.index(row, std::max(table_->currentIndex().column(), 0));
    const QPersistentModelIndex anchor = anchor_;
    auto& selection = *table_->selectionModel();
    selection.setCurrentIndex(target, QItemSelectionModel::NoUpdate);
    selection.select(QItemSelection(std::min<QModelIndex>(anchor, target),
                                    std::max<QModelIndex>(anchor, target)),
                     kSelectRows);
    anchor_ = anchor;
    table_->scrollTo(target);
}

void TableSelection::keepDuring(const std::function<void()>& change)
{
    if (table_ == nullptr) {
        change();
        return;
    }
    const auto before = sourceRows();
    const auto current = table_->currentIndex();
    const auto currentRow =
        current.isValid() ? std::optional(model_.rows().sourceRow(current.row())) : std::nullopt;
    {
        const QScopedValueRollback guard(isKeeping_, true);
        change();
        restore(before);
        if (currentRow && model_.rowCount() > 0) {
            restoreCurrent(*currentRow, current.column());
        }
    }
    if (sourceRows() != before) {
        changed_();
    }
}

void TableSelection::restore(const std::vector<std::size_t>& sourceRows)
{
    QItemSelection selection;
    const int lastColumn = model_.columnCount() - 1;
    // Adjacent shown rows are one range, from `first` to the row before `next`.
    int first = 0;
    int next = 0;
    const auto endRange = [&] {
        if (first < next) {
            selection.append(
                QItemSelectionRange(model_.index(first, 0), model_.index(next - 1, lastColumn)));
        }
    };
    for (const auto sourceRow : sourceRows) {
        if (const auto row = model_.rows().rowOf(sourceRow)) {
            if (*row != next) {
                endRange();
                first = *row;
            }
            next = *row + 1;
        }
    }
    endRange();
    if (selection.size() <= kMaxSelectedRanges) {
        table_->selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
    }
}

void TableSelection::restoreCurrent(std::size_t sourceRow, int column)
{
    // The keyboard focus of a hidden row moves to the row that takes its place.
    const int row = std::min(model_.rows().firstRowFrom(sourceRow), model_.rowCount() - 1);
    const auto index = model_.index(row, column);
    table_->selectionModel()->setCurrentIndex(index, QItemSelectionModel::NoUpdate);
    anchor_ = index;
    table_->scrollTo(index);
}

}  // namespace dunmora
