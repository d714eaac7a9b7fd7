#include "adapters/qt/RowReader.h"

#include "adapters/qt/OneLineText.h"

#include <algorithm>
#include <chrono>
#include <utility>
#include <variant>

namespace dunmora {

bool RowReader::setDataSource(TableViewDataSource* dataSource, TableViewDelegate* delegate)
{
    dataSource_ = dataSource;
    delegate_ = delegate;
    isAsking_ = isAsking_ && dataSource != nullptr;
    if (dataSource == nullptr) {
        return false;
    }
    const auto columns = dataSource->columns();
    const auto before = std::exchange(columns_, {columns.begin(), columns.end()});
    updateNotes();
    return columns_ != before;
}

bool RowReader::updateNotes()
{
    const auto title = delegate_ == nullptr ? std::string_view() : delegate_->noteTitle();
    auto columns = columns_;
    if (!columns.empty() && columns.back().kind == TableColumn::Kind::Note) {
        columns.pop_back();
    }
    if (!title.empty()) {
        columns.push_back({{}, title, TableColumn::Kind::Note});
    }
    return std::exchange(columns_, columns) != columns;
}

std::optional<int> RowReader::checkColumn() const
{
    const auto check =
        std::find_if(columns_.begin(), columns_.end(), [](const TableColumn& column) {
            return column.kind == TableColumn::Kind::CheckBox;
        });
    return check == columns_.end() ? std::nullopt
                                   : std::optional(static_cast<int>(check - columns_.begin()));
}

std::size_t RowReader::numberOfRows() const
{
    return dataSource_ == nullptr ? 0 : dataSource_->numberOfRows();
}

QString RowReader::text(std::size_t row, std::size_t column) const
{
    if (columns_[column].kind == TableColumn::Kind::Note) {
        return oneLineText(style(row).note);
    }
    const auto shown = value(row, columns_[column].identifier);
    if (!shown) {
        return {};
    }
    if (const auto* text = std::get_if<std::string_view>(&*shown)) {
        return oneLineText(*text);
    }
    const auto* const time = std::get_if<std::chrono::sys_seconds>(&*shown);
    return time == nullptr ? QString() : dates_.text(*time);
}

bool RowReader::isChecked(std::size_t row, std::string_view column) const
{
    const auto shown = value(row, column);
    const auto* flag = shown ? std::get_if<bool>(&*shown) : nullptr;
    return flag != nullptr && *flag;
}

RowStyle RowReader::style(std::size_t row) const
{
    auto* const asked = delegate();
    return asked == nullptr ? RowStyle() : asked->styleOfRow(row);
}

QString RowReader::wholeWarning(std::size_t row) const
{
    auto* const asked = delegate();
    return asked == nullptr ? QString() : oneLineText(asked->wholeWarning(row));
}

QString RowReader::leastText(std::size_t column) const
{
    auto* const asked = delegate();
    return asked == nullptr ? QString()
                            : oneLineText(asked->leastText(columns_[column].identifier));
}

QString RowReader::countText(std::size_t shown, std::size_t all) const
{
    return delegate_ == nullptr ? QString()
                                : QString::fromStdString(delegate_->countText(shown, all));
}

QString RowReader::accessibleCellText(std::string_view title,
                                      const std::optional<QString>& shown) const
{
    if (delegate_ == nullptr) {
        return {};
    }
    const auto text = shown.value_or(QString()).toStdString();
    return QString::fromStdString(delegate_->accessibleCellText(
        title, shown ? std::optional<std::string_view>(text) : std::nullopt));
}

void RowReader::edit(std::span<const std::size_t> rows, std::string_view column, bool isChecked)
{
    if (!isAsking_) {
        return;
    }
    std::vector<std::size_t> edited;
    edited.reserve(rows.size());
    for (const auto row : rows) {
        if (this->isChecked(row, column) != isChecked) {
            dataSource_->setObjectValue(isChecked, column, static_cast<std::ptrdiff_t>(row));
            edited.push_back(row);
        }
    }
    if (!edited.empty() && delegate_ != nullptr) {
        delegate_->rowsEdited(edited);
    }
}

std::optional<CellValue> RowReader::value(std::size_t row, std::string_view column) const
{
    return isAsking_ ? dataSource_->objectValue(column, static_cast<std::ptrdiff_t>(row))
                     : std::nullopt;
}

}  // namespace dunmora
