#include "adapters/qt/TableModel.h"

#include "adapters/qt/NamePrefix.h"
#include "adapters/qt/OneLineText.h"

#include <QDateTime>
#include <QLocale>

#include <algorithm>
#include <array>
#include <chrono>
#include <limits>
#include <utility>
#include <variant>

namespace dunmora {

namespace {

/// More rows than anybody draws in a sitting; they take some megabytes.
constexpr std::size_t kMaxDrawnRows = 10'000;

QString shownText(const std::optional<CellValue>& value)
{
    if (!value) {
        return {};
    }
    if (const auto* text = std::get_if<std::string_view>(&*value)) {
        return oneLineText(*text);
    }
    if (const auto* time = std::get_if<std::chrono::sys_seconds>(&*value)) {
        const auto local = QDateTime::fromSecsSinceEpoch(time->time_since_epoch().count());
        return QLocale().toString(local, QLocale::ShortFormat);
    }
    return {};
}

bool isTrue(const std::optional<CellValue>& value)
{
    const auto* flag = value ? std::get_if<bool>(&*value) : nullptr;
    return flag != nullptr && *flag;
}

std::string_view textIn(const std::optional<CellValue>& value)
{
    const auto* text = value ? std::get_if<std::string_view>(&*value) : nullptr;
    return text == nullptr ? std::string_view() : *text;
}

}  // namespace

TableModel::TableModel(std::vector<TableColumn> columns) : columns_(std::move(columns))
{
    const auto check = std::find_if(columns_.begin(), columns_.end(),
                                    [](const TableColumn& column) { return column.isCheckMark; });
    if (check != columns_.end()) {
        checkColumn_ = static_cast<int>(check - columns_.begin());
    }
}

void TableModel::setDataSource(TableViewDataSource* dataSource, TableViewDelegate* delegate)
{
    dataSource_ = dataSource;
    delegate_ = delegate;
    isAsking_ = isAsking_ && dataSource != nullptr;
}

void TableModel::reload(bool isAsking)
{
    beginResetModel();
    drawnRows_.clear();
    order_.clear();
    shownRows_.reset();
    isAsking_ = isAsking && dataSource_ != nullptr;
    const auto rows = dataSource_ == nullptr ? 0 : dataSource_->numberOfRows();
    sourceRowCount_ = std::min(rows, std::size_t{std::numeric_limits<int>::max()});
    endResetModel();
}

void TableModel::showOnly(SourceRows sourceRows)
{
    beginResetModel();
    shownRows_ = std::move(sourceRows);
    endResetModel();
}

void TableModel::showAll()
{
    if (shownRows_) {
        beginResetModel();
        shownRows_.reset();
        endResetModel();
    }
}

std::size_t TableModel::sourceRow(int row) const
{
    const auto index = static_cast<std::size_t>(row);
    return shownRows_ ? (*shownRows_)[index] : index;
}

std::optional<int> TableModel::rowOf(std::size_t sourceRow) const
{
    const int row = firstRowFrom(sourceRow);
    const bool isShown = row < rowCount() && this->sourceRow(row) == sourceRow;
    return isShown ? std::optional(row) : std::nullopt;
}

int TableModel::firstRowFrom(std::size_t sourceRow) const
{
    if (!shownRows_) {
        return static_cast<int>(std::min(sourceRow, sourceRowCount_));
    }
    const auto found = std::lower_bound(shownRows_->begin(), shownRows_->end(), sourceRow);
    return static_cast<int>(found - shownRows_->begin());
}

void TableModel::refresh()
{
    beginDrawing();
    if (!isAsking_) {
        return;
    }
    for (auto& [sourceRow, drawn] : drawnRows_) {
        askForMarks(sourceRow, drawn);
    }
}

const DrawnRow* TableModel::drawnRow(int row) const
{
    const auto sourceRow = this->sourceRow(row);
    const auto found = drawnRows_.find(sourceRow);
    if (!isAsking_) {
        return found == drawnRows_.end() ? nullptr : &found->second;
    }
    if (found != drawnRows_.end() && found->second.drawing == drawing_) {
        return &found->second;
    }
    if (found == drawnRows_.end()) {
        remember(sourceRow);
    }
    auto& drawn = drawnRows_[sourceRow];
    askForTexts(sourceRow, drawn);
    askForMarks(sourceRow, drawn);
    drawn.beginsGroup = beginsGroup(row, drawn.style.group);
    drawn.drawing = drawing_;
    return &drawn;
}

void TableModel::edit(std::span<const std::size_t> sourceRows, std::string_view column,
                      bool isChecked)
{
    if (!isAsking_) {
        return;
    }
    std::vector<std::size_t> edited;
    for (const auto sourceRow : sourceRows) {
        if (this->isChecked(sourceRow, column) != isChecked) {
            dataSource_->setObjectValue(isChecked, column, static_cast<std::ptrdiff_t>(sourceRow));
            edited.push_back(sourceRow);
        }
    }
    if (!edited.empty() && delegate_ != nullptr) {
        delegate_->rowsEdited(edited);
    }
    refresh();
}

bool TableModel::isChecked(std::size_t sourceRow, std::string_view column) const
{
    return isAsking_ && isTrue(value(sourceRow, column));
}

QString TableModel::sourceText(std::size_t sourceRow, std::size_t column) const
{
    return isAsking_ ? shownText(value(sourceRow, columns_[column].identifier)) : QString();
}

bool TableModel::matches(std::size_t sourceRow, RowFilter& filter) const
{
    searched_.clear();
    for (const TableColumn& column : columns_) {
        if (!column.isCheckMark) {
            searched_.push_back({column.kind, textIn(value(sourceRow, column.identifier))});
        }
    }
    return filter.matches(searched_);
}

int TableModel::rowCount(const QModelIndex& parent) const
{
    if (parent.isValid()) {
        return 0;
    }
    return static_cast<int>(shownRows_ ? shownRows_->size() : sourceRowCount_);
}

int TableModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(columns_.size());
}

Qt::ItemFlags TableModel::flags(const QModelIndex& index) const
{
    if (!index.isValid()) {
        return Qt::NoItemFlags;
    }
    const auto flags = Qt::ItemIsSelectable | Qt::ItemIsEnabled | Qt::ItemNeverHasChildren;
    return index.column() == checkColumn_ ? flags | Qt::ItemIsUserCheckable : flags;
}

QVariant TableModel::data(const QModelIndex& index, int role) const
{
    constexpr std::array kRoles{int{Qt::DisplayRole}, int{Qt::CheckStateRole}, int{Qt::ToolTipRole},
                                int{Qt::AccessibleTextRole}, int{Qt::AccessibleDescriptionRole}};
    if (!index.isValid() || std::find(kRoles.begin(), kRoles.end(), role) == kRoles.end()) {
        return {};
    }
    const auto column = static_cast<std::size_t>(index.column());
    const bool isCheckMark = columns_[column].isCheckMark;
    if ((role == Qt::CheckStateRole) != isCheckMark &&
        (role == Qt::CheckStateRole || role == Qt::DisplayRole)) {
        return {};
    }
    const auto* drawn = freshRow(index.row());
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
        return toolTipText({oneLineText(drawn->style.warning.text)});
    case Qt::AccessibleDescriptionRole:
        return oneLineText(drawn->style.warning.text);
    default:
        return drawn->texts[column];
    }
}

bool TableModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!index.isValid() || role != Qt::CheckStateRole || index.column() != checkColumn_ ||
        !isAsking_) {
        return false;
    }
    const std::array sourceRows{sourceRow(index.row())};
    edit(sourceRows, columns_[static_cast<std::size_t>(index.column())].identifier,
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
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return columns_[static_cast<std::size_t>(section)].title;
    case Qt::ToolTipRole:
        return toolTipText({columns_[static_cast<std::size_t>(section)].title});
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
    const auto typed = value.toString();
    auto row = nextNamed(start.row(), NamePrefix(typed));
    if (!row && typed.size() > 1 && typed.count(typed.front()) == typed.size()) {
        // The same letter again and again goes from one such name to the next.
        row = nextNamed(start.row(), NamePrefix(typed.left(1)));
    }
    return row ? QModelIndexList{index(*row, start.column())} : QModelIndexList();
}

std::optional<int> TableModel::nextNamed(int firstRow, const NamePrefix& prefix) const
{
    const int rows = isAsking_ ? rowCount() : 0;
    const auto begins = [this, &prefix](int row, const TableColumn& column) {
        return column.kind == RowFilter::Cell::Kind::Name &&
               prefix.begins(textIn(value(sourceRow(row), column.identifier)));
    };
    for (int i = 0; i < rows; ++i) {
        const int row = (firstRow + i) % rows;
        if (std::any_of(columns_.begin(), columns_.end(),
                        [&](const TableColumn& column) { return begins(row, column); })) {
            return row;
        }
    }
    return std::nullopt;
}

std::optional<CellValue> TableModel::value(std::size_t sourceRow, std::string_view column) const
{
    return dataSource_->objectValue(column, static_cast<std::ptrdiff_t>(sourceRow));
}

const DrawnRow* TableModel::freshRow(int row) const
{
    const auto found = drawnRows_.find(sourceRow(row));
    if (found != drawnRows_.end()) {
        found->second.drawing = 0;
    }
    return drawnRow(row);
}

std::size_t TableModel::groupOf(std::size_t sourceRow) const
{
    const auto found = drawnRows_.find(sourceRow);
    if (found != drawnRows_.end() && found->second.drawing == drawing_) {
        return found->second.style.group;
    }
    return delegate_ == nullptr ? 0 : delegate_->styleOfRow(sourceRow).group;
}

bool TableModel::beginsGroup(int row, std::size_t group) const
{
    return row > 0 && groupOf(sourceRow(row - 1)) != group;
}

void TableModel::askForTexts(std::size_t sourceRow, DrawnRow& drawn) const
{
    drawn.texts.resize(columns_.size());
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        if (!columns_[i].isCheckMark) {
            drawn.texts[i] = shownText(value(sourceRow, columns_[i].identifier));
        }
    }
}

void TableModel::askForMarks(std::size_t sourceRow, DrawnRow& drawn) const
{
    if (checkColumn_) {
        const auto& column = columns_[static_cast<std::size_t>(*checkColumn_)];
        drawn.isChecked = isTrue(value(sourceRow, column.identifier));
    }
    drawn.style = delegate_ == nullptr ? RowStyle() : delegate_->styleOfRow(sourceRow);
}

void TableModel::remember(std::size_t sourceRow) const
{
    if (order_.size() == kMaxDrawnRows) {
        drawnRows_.erase(order_.front());
        order_.pop_front();
    }
    order_.push_back(sourceRow);
}

QString TableModel::accessibleText(const DrawnRow* drawn, std::size_t column) const
{
    const auto& [identifier, title, isCheckMark, kind] = columns_[column];
    if (drawn == nullptr) {
        return QStringLiteral("%1: not shown yet").arg(title);
    }
    if (!isCheckMark) {
        const auto& text = drawn->texts[column];
        return title + QLatin1String(": ") + (text.isEmpty() ? QStringLiteral("empty") : text);
    }
    auto name = who(*drawn) + (drawn->isChecked ? QLatin1String(", marked for deletion")
                                                : QLatin1String(", kept"));
    if (!drawn->style.warning.text.empty()) {
        name += QLatin1String(". ") + oneLineText(drawn->style.warning.text);
    }
    return name;
}

QString TableModel::who(const DrawnRow& drawn) const
{
    auto name = (textOf(drawn, "fname") + u' ' + textOf(drawn, "lname")).trimmed();
    if (!name.isEmpty()) {
        return name;
    }
    for (const auto* identifier : {"nickname", "home", "work", "mobile"}) {
        if (auto text = textOf(drawn, identifier).trimmed(); !text.isEmpty()) {
            return text;
        }
    }
    return QStringLiteral("no name");
}

QString TableModel::textOf(const DrawnRow& drawn, std::string_view identifier) const
{
    const auto found =
        std::find_if(columns_.begin(), columns_.end(), [identifier](const TableColumn& column) {
            return column.identifier == identifier;
        });
    return found == columns_.end()
               ? QString()
               : drawn.texts[static_cast<std::size_t>(found - columns_.begin())];
}

}  // namespace dunmora
