#include "adapters/qt/TableModel.h"

#include "adapters/qt/OneLineText.h"
#include "adapters/qt/QtText.h"

#include <algorithm>
#include <array>
#include <utility>

namespace dunmora {

bool TableModel::setDataSource(TableViewDataSource* dataSource, TableViewDelegate* delegate)
{
    const bool haveColumnsChanged = reader_.setDataSource(dataSource, delegate);
    if (haveColumnsChanged) {
        beginResetModel();
        rows_.reset(0);
        drawnRows_.clear();
        endResetModel();
    }
    return haveColumnsChanged;
}

void TableModel::freeze()
{
    drawnRows_.refreshMarks();
    reader_.setAsking(false);
}

bool TableModel::reload(bool isAsking)
{
    beginResetModel();
    drawnRows_.clear();
    reader_.setAsking(isAsking);
    const bool haveColumnsChanged = reader_.updateNotes();
    rows_.reset(reader_.numberOfRows());
    endResetModel();
    return haveColumnsChanged;
}

RowRange TableModel::rowsTogetherWith(std::size_t sourceRow) const
{
    auto* const delegate = reader_.delegate();
    return delegate == nullptr ? RowRange{sourceRow, 1} : delegate->rowsTogetherWith(sourceRow);
}

void TableModel::showOnly(const ShownRows::SourceRows& found)
{
    beginResetModel();
    rows_.showOnly(found, [this](std::size_t sourceRow) { return rowsTogetherWith(sourceRow); });
    endResetModel();
}

void TableModel::showAll()
{
    if (rows_.areFiltered()) {
        beginResetModel();
        rows_.showAll();
        endResetModel();
    }
}

QString TableModel::countText() const
{
    return reader_.countText(rows_.foundCount(), rows_.sourceRowCount());
}

std::unique_ptr<RowFilter> TableModel::filter(const QString& typed) const
{
    auto* const delegate = reader_.delegate();
    return delegate == nullptr ? nullptr : delegate->rowFilter(typed.toStdString());
}

QString TableModel::sourceText(std::size_t sourceRow, std::size_t column) const
{
    return reader_.text(sourceRow, column);
}

const DrawnRow* TableModel::drawnRow(int row) const
{
    return drawnRows_.find(rows_.sourceRow(row), sourceRowAbove(row));
}

bool TableModel::isSubstitute(const DrawnRow& drawn, std::size_t column)
{
    return drawn.substituteColumn == column && drawn.texts[column].trimmed().isEmpty();
}

const QString& TableModel::shownText(const DrawnRow& drawn, std::size_t column)
{
    return isSubstitute(drawn, column) ? drawn.substitute : drawn.texts[column];
}

QString TableModel::tabSeparatedText(std::size_t sourceRow) const
{
    const auto drawn = drawnRows_.read(sourceRow);
    QStringList texts;
    for (std::size_t i = 0; i < columns().size(); ++i) {
        if (columns()[i].kind != TableColumn::Kind::CheckBox) {
            texts.push_back(shownText(drawn, i));
        }
    }
    return texts.join(u'\t');
}

QString TableModel::wholeWarning(int row) const
{
    const auto* const drawn = drawnRow(row);
    if (drawn == nullptr || drawn->style.warning.text.empty()) {
        return {};
    }
    return isAsking() ? reader_.wholeWarning(rows_.sourceRow(row))
                      : oneLineText(drawn->style.warning.text);
}

bool TableModel::isChecked(std::size_t sourceRow, std::string_view column) const
{
    return reader_.isChecked(sourceRow, column);
}

void TableModel::edit(std::span<const std::size_t> sourceRows, std::string_view column,
                      bool isChecked)
{
    if (isAsking()) {
        reader_.edit(sourceRows, column, isChecked);
        beginFrame();
    }
}

int TableModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : rows_.count();
}

int TableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(columns().size());
}

Qt::ItemFlags TableModel::flags(const QModelIndex& index) const
{
    if (!index.isValid()) {
        return Qt::NoItemFlags;
    }
    const auto flags = Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
    return index.column() == checkColumn() ? flags | Qt::ItemIsUserCheckable : flags;
}

QVariant TableModel::data(const QModelIndex& index, int role) const
{
    constexpr std::array kRoles{int{Qt::DisplayRole}, int{Qt::CheckStateRole}, int{Qt::ToolTipRole},
                                int{Qt::AccessibleTextRole}, int{Qt::AccessibleDescriptionRole}};
    if (!index.isValid() || std::find(kRoles.begin(), kRoles.end(), role) == kRoles.end()) {
        return {};
    }
    const bool isCheckBox = index.column() == checkColumn();
    if ((role == Qt::CheckStateRole && !isCheckBox) || (role == Qt::DisplayRole && isCheckBox)) {
        return {};
    }
    const auto column = static_cast<std::size_t>(index.column());
    const auto* drawn =
        drawnRows_.findFresh(rows_.sourceRow(index.row()), sourceRowAbove(index.row()));
    if (role == Qt::AccessibleTextRole) {
        return accessibleText(drawn, column);
    }
    if (drawn == nullptr) {
        return {};
    }
    switch (role) {
    case Qt::CheckStateRole:
        return drawn->isChecked ? Qt::Checked : Qt::Unchecked;
    case Qt::ToolTipRole:
        return toolTipText({wholeWarning(index.row())});
    case Qt::AccessibleDescriptionRole:
        return wholeWarning(index.row());
    default:
        return shownText(*drawn, column);
    }
}

bool TableModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!index.isValid() || role != Qt::CheckStateRole || index.column() != checkColumn() ||
        !isAsking()) {
        return false;
    }
    const std::array sourceRows{rows_.sourceRow(index.row())};
    edit(sourceRows, columns()[static_cast<std::size_t>(index.column())].identifier,
         value.toInt() == Qt::Checked);
    Q_EMIT dataChanged(index, index);
    return true;
}

QVariant TableModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation == Qt::Vertical) {
        return role == Qt::AccessibleTextRole || role == Qt::DisplayRole
                   ? QVariant(QStringLiteral("Row %1").arg(section + 1))
                   : QVariant();
    }
    const auto title = toQString(columns()[static_cast<std::size_t>(section)].title);
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return title;
    case Qt::ToolTipRole:
        return toolTipText({title});
    case Qt::TextAlignmentRole:
        return QVariant::fromValue(Qt::AlignLeading | Qt::AlignVCenter);
    default:
        return {};
    }
}

QModelIndexList TableModel::match(const QModelIndex& start, int role, const QVariant& value,
                                  int hits, Qt::MatchFlags flags) const
{
    if (role != Qt::DisplayRole || !flags.testFlag(Qt::MatchStartsWith)) {
        return QAbstractTableModel::match(start, role, value, hits, flags);
    }
    auto* const delegate = reader_.delegate();
    if (delegate == nullptr || rows_.count() == 0) {
        return {};
    }
    const auto found = delegate->rowForTyping(
        value.toString().toStdString(), rows_.sourceRow(start.row()),
        [this](std::size_t sourceRow) { return rows_.rowOf(sourceRow).has_value(); });
    return found ? QModelIndexList{index(*rows_.rowOf(*found), start.column())} : QModelIndexList();
}

std::optional<std::size_t> TableModel::sourceRowAbove(int row) const
{
    return row > 0 ? std::optional(rows_.sourceRow(row - 1)) : std::nullopt;
}

QString TableModel::accessibleText(const DrawnRow* drawn, std::size_t column) const
{
    if (drawn != nullptr && columns()[column].kind == TableColumn::Kind::CheckBox) {
        return oneLineText(drawn->style.accessibleText);
    }
    if (drawn != nullptr && isSubstitute(*drawn, column)) {
        return oneLineText(drawn->style.substitute.accessibleText);
    }
    return reader_.accessibleCellText(columns()[column].title,
                                      drawn == nullptr ? std::nullopt
                                                       : std::optional(drawn->texts[column]));
}

}  // namespace dunmora
