#include "adapters/qt/TableColumnWidths.h"

#include "adapters/qt/TableCellDelegate.h"
#include "adapters/qt/TableModel.h"

#include <QHeaderView>
#include <QScopedValueRollback>
#include <QScreen>
#include <QTableView>

#include <algorithm>
#include <utility>

namespace dunmora {

namespace {

/// Enough to estimate the others. Prime, so that the samples are not all first copies when every
/// group has the same size.
constexpr std::size_t kSampledRows = 199;
/// In letters of average width.
constexpr int kLeastLetters = 8;
constexpr int kMostLetters = 28;

}  // namespace

TableColumnWidths::TableColumnWidths(QTableView& table, const TableModel& model,
                                     const TableCellDelegate& delegate)
    : table_(table),
      model_(model),
      delegate_(delegate),
      letter_(table.fontMetrics().averageCharWidth())
{
}

void TableColumnWidths::setChosen(ColumnWidths widths)
{
    chosen_ = std::move(widths);
    columnsChanged();
}

void TableColumnWidths::onChosen(std::function<void(const ColumnWidths&)> handler)
{
    onChosen_ = std::move(handler);
}

void TableColumnWidths::columnsChanged()
{
    wereResizedByUser_ = false;
    columns_ = measured();
    applyChosen();
    fit();
}

void TableColumnWidths::rowsChanged()
{
    if (wereResizedByUser_ || !model_.isAsking() || model_.rows().sourceRowCount() == 0) {
        return;
    }
    columns_ = measured();
    fit();
}

void TableColumnWidths::metricsChanged()
{
    const int letter = std::max(table_.fontMetrics().averageCharWidth(), 1);
    if (wereResizedByUser_ || !model_.isAsking()) {
        for (auto& column : columns_) {
            for (int* const width : {&column.wanted, &column.whole}) {
                *width = *width * letter / std::max(letter_, 1);
            }
        }
        if (wereResizedByUser_) {
            chosen_ = current();
        }
    } else {
        columns_ = measured();
    }
    letter_ = letter;
    fit();
}

void TableColumnWidths::fit()
{
    if (columns_.empty()) {
        return;
    }
    const QScopedValueRollback guard(isFitting_, true);
    std::vector<int> widths;
    int spare = table_.viewport()->width();
    for (const auto& column : columns_) {
        widths.push_back(column.wanted);
        spare -= column.wanted;
    }
    if (spare > 0 && wereResizedByUser_) {
        widths.back() += spare;
    } else if (spare > 0) {
        shareRest(widths, widenCutColumns(widths, spare));
    }
    auto& header = *table_.horizontalHeader();
    for (std::size_t i = 0; i < widths.size(); ++i) {
        header.resizeSection(static_cast<int>(i), widths[i]);
    }
}

void TableColumnWidths::sectionResized(int section, int width)
{
    if (isFitting_ || section < 0 || static_cast<std::size_t>(section) >= columns_.size()) {
        return;
    }
    if (!wereResizedByUser_) {
        // From now on the widths on the screen are the wanted ones.
        wereResizedByUser_ = true;
        for (std::size_t i = 0; i + 1 < columns_.size(); ++i) {
            columns_[i].wanted = table_.horizontalHeader()->sectionSize(static_cast<int>(i));
        }
    }
    columns_[static_cast<std::size_t>(section)].wanted = width;
    fit();
    chosen_ = current();
    if (onChosen_) {
        onChosen_(chosen_);
    }
}

/// Does nothing unless the user has chosen the widths of all columns: the others would keep a width
/// that was measured before there were rows.
void TableColumnWidths::applyChosen()
{
    const auto isChosen = [this](const TableColumn& column) {
        return column.identifier.empty() || chosen_.contains(column.identifier);
    };
    if (chosen_.empty() ||
        !std::all_of(model_.columns().begin(), model_.columns().end(), isChosen)) {
        return;
    }
    const int least = table_.horizontalHeader()->minimumSectionSize();
    const int most = std::max(table_.screen()->availableSize().width(), least);
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        const auto found = chosen_.find(model_.columns()[i].identifier);
        if (found != chosen_.end()) {
            columns_[i].wanted = std::clamp(found->second, least, most);
            wereResizedByUser_ = true;
        }
    }
}

/// The wanted widths by identifier; without the notes' column, which has none.
ColumnWidths TableColumnWidths::current() const
{
    ColumnWidths widths;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        if (const auto identifier = model_.columns()[i].identifier; !identifier.empty()) {
            widths.emplace(identifier, columns_[i].wanted);
        }
    }
    return widths;
}

std::vector<TableColumnWidths::Width> TableColumnWidths::measured() const
{
    std::vector<Width> columns;
    for (std::size_t i = 0; i < model_.columns().size(); ++i) {
        const int title = table_.horizontalHeader()->sectionSizeHint(static_cast<int>(i));
        const int check = delegate_.checkColumnWidth();
        const auto content = model_.columns()[i].kind == TableColumn::Kind::CheckBox
                                 ? Width{check, check}
                                 : textWidth(i);
        columns.push_back({std::max(title, content.wanted), std::max(title, content.whole)});
    }
    return columns;
}

TableColumnWidths::Width TableColumnWidths::textWidth(std::size_t column) const
{
    const auto metrics = table_.fontMetrics();
    const int letter = metrics.averageCharWidth();
    std::vector<int> widths;
    const auto rows = model_.isAsking() ? model_.rows().sourceRowCount() : 0;
    const auto samples = std::min(rows, kSampledRows);
    for (std::size_t i = 0; i < samples; ++i) {
        const auto text = model_.sourceText(i * rows / samples, column);
        if (!text.isEmpty()) {
            widths.push_back(metrics.horizontalAdvance(text.left(qsizetype{2} * kMostLetters)));
        }
    }
    std::sort(widths.begin(), widths.end());
    // Ignore the longest twentieth; a tool tip shows texts that are cut.
    const int most = widths.empty() ? 0 : widths[(widths.size() - 1) * 19 / 20];
    const int longest = widths.empty() ? 0 : widths.back();
    const int least = rows == 0 ? 0 : leastWidth(column);
    const int margins = delegate_.textMargins() + letter;
    return {std::max(std::clamp(most, kLeastLetters * letter, kMostLetters * letter), least) +
                margins,
            std::max(longest, least) + margins};
}

int TableColumnWidths::leastWidth(std::size_t column) const
{
    const auto metrics = table_.fontMetrics();
    const int text = metrics.horizontalAdvance(model_.leastText(column));
    return model_.columns()[column].kind == TableColumn::Kind::Date
               ? std::max(text, model_.dates().greatestWidth(metrics))
               : text;
}

int TableColumnWidths::widenCutColumns(std::vector<int>& widths, int spare) const
{
    const auto missing = [&](std::size_t column) {
        return columns_[column].whole - widths[column];
    };
    std::vector<std::size_t> cut;
    for (std::size_t i = 0; i < widths.size(); ++i) {
        if (missing(i) > 0) {
            cut.push_back(i);
        }
    }
    // Those that need least come first, so that they leave more to the others.
    std::sort(cut.begin(), cut.end(),
              [&](std::size_t one, std::size_t other) { return missing(one) < missing(other); });
    for (std::size_t i = 0; i < cut.size(); ++i) {
        const int share = spare / static_cast<int>(cut.size() - i);
        const int given = std::min(share, missing(cut[i]));
        widths[cut[i]] += given;
        spare -= given;
    }
    return spare;
}

void TableColumnWidths::shareRest(std::vector<int>& widths, int spare) const
{
    std::vector<std::size_t> wide;
    for (std::size_t i = 0; i < widths.size(); ++i) {
        if (model_.columns()[i].kind == TableColumn::Kind::WideText) {
            wide.push_back(i);
        }
    }
    if (wide.empty()) {
        wide.push_back(widths.size() - 1);
    }
    const int share = spare / static_cast<int>(wide.size());
    for (const auto column : wide) {
        widths[column] += share;
    }
    widths[wide.back()] += spare % static_cast<int>(wide.size());
}

}  // namespace dunmora
