#include "adapters/qt/DrawnRows.h"

#include "adapters/qt/OneLineText.h"
#include "adapters/qt/RowReader.h"

namespace dunmora {

namespace {

/// Far more than a screen shows, and few enough to be read at once before a deletion.
constexpr std::size_t kMaxRows = 2'000;

}  // namespace

void DrawnRows::clear()
{
    rows_.clear();
    order_.clear();
}

void DrawnRows::refreshMarks()
{
    beginFrame();
    if (!reader_.isAsking()) {
        return;
    }
    for (auto& [row, drawn] : rows_) {
        readMarks(row, drawn);
    }
}

const DrawnRow* DrawnRows::find(std::size_t row, std::optional<std::size_t> above)
{
    const auto found = rows_.find(row);
    if (!reader_.isAsking()) {
        return found == rows_.end() ? nullptr : &found->second;
    }
    if (found != rows_.end() && found->second.frame == frame_) {
        return &found->second;
    }
    auto& drawn = found == rows_.end() ? added(row) : found->second;
    readMarks(row, drawn);
    readTexts(row, drawn);
    drawn.beginsGroup = above && groupOf(*above) != drawn.style.group;
    drawn.frame = frame_;
    return &drawn;
}

const DrawnRow* DrawnRows::findFresh(std::size_t row, std::optional<std::size_t> above)
{
    const auto found = rows_.find(row);
    if (found != rows_.end()) {
        found->second.frame = 0;
    }
    return find(row, above);
}

DrawnRow DrawnRows::read(std::size_t row) const
{
    DrawnRow drawn;
    readMarks(row, drawn);
    readTexts(row, drawn);
    return drawn;
}

DrawnRow& DrawnRows::added(std::size_t row)
{
    if (order_.size() == kMaxRows) {
        rows_.erase(order_.front());
        order_.pop_front();
    }
    order_.push_back(row);
    return rows_[row];
}

void DrawnRows::readMarks(std::size_t row, DrawnRow& drawn) const
{
    if (const auto check = reader_.checkColumn()) {
        const auto& column = reader_.columns()[static_cast<std::size_t>(*check)];
        drawn.isChecked = reader_.isChecked(row, column.identifier);
    }
    drawn.style = reader_.style(row);
}

void DrawnRows::readTexts(std::size_t row, DrawnRow& drawn) const
{
    const auto& columns = reader_.columns();
    drawn.texts.resize(columns.size());
    drawn.substituteColumn.reset();
    for (std::size_t i = 0; i < columns.size(); ++i) {
        if (columns[i].kind == TableColumn::Kind::Note) {
            drawn.texts[i] = oneLineText(drawn.style.note);
        } else if (columns[i].kind != TableColumn::Kind::CheckBox) {
            drawn.texts[i] = reader_.text(row, i);
        }
        const auto& substitute = drawn.style.substitute;
        if (!substitute.column.empty() && columns[i].identifier == substitute.column) {
            drawn.substituteColumn = i;
            drawn.substitute = oneLineText(substitute.text);
        }
    }
}

std::size_t DrawnRows::groupOf(std::size_t row) const
{
    const auto found = rows_.find(row);
    const bool isCurrent = found != rows_.end() && found->second.frame == frame_;
    return isCurrent ? found->second.style.group : reader_.style(row).group;
}

}  // namespace dunmora
