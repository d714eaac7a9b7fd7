#include "adapters/qt/TableColumnWidths.h"

#include "adapters/qt/TableCellDelegate.h"
#include "adapters/qt/TableModel.h"

#include <QHeaderView>
#include <QScopedValueRollback>
#include <QTableView>

#include <algorithm>
#include <numeric>

namespace dunmora {

namespace {

/// Enough to estimate the others.
constexpr std::size_t kSampledRows = 200;
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

void TableColumnWidths::columnsChanged()
{
    wereResizedByUser_ = false;
    wanted_ = natural();
    fit();
}

void TableColumnWidths::rowsChanged()
{
    if (wereResizedByUser_ || !model_.isAsking() || model_.rows().sourceRowCount() == 0) {
        return;
    }
    wanted_ = natural();
    fit();
}

void TableColumnWidths::metricsChanged()
{
    const int letter = std::max(table_.fontMetrics().averageCharWidth(), 1);
    if (wereResizedByUser_ || !model_.isAsking()) {
        for (int& width : wanted_) {
            width = width * letter / std::max(letter_, 1);
        }
    } else {
        wanted_ = natural();
    }
    letter_ = letter;
    fit();
}

void TableColumnWidths::fit()
{
    if (wanted_.empty()) {
        return;
    }
    const QScopedValueRollback guard(isFitting_, true);
    auto widths = wanted_;
    const int spare = table_.viewport()->width() - std::accumulate(widths.begin(), widths.end(), 0);
    if (spare > 0) {
        std::vector<std::size_t> stretched;
        for (std::size_t i = 0; i < widths.size(); ++i) {
            if (stretches(i)) {
                stretched.push_back(i);
            }
        }
        if (stretched.empty()) {
            stretched.push_back(widths.size() - 1);
        }
        const int share = spare / static_cast<int>(stretched.size());
        for (const auto column : stretched) {
            widths[column] += share;
        }
        widths[stretched.back()] += spare % static_cast<int>(stretched.size());
    }
    auto& header = *table_.horizontalHeader();
    for (std::size_t i = 0; i < widths.size(); ++i) {
        header.resizeSection(static_cast<int>(i), widths[i]);
    }
}

void TableColumnWidths::sectionResized(int section, int width)
{
    if (isFitting_ || section < 0 || static_cast<std::size_t>(section) >= wanted_.size()) {
        return;
    }
    if (!wereResizedByUser_) {
        // From now on the widths on the screen are the wanted ones.
        wereResizedByUser_ = true;
        for (std::size_t i = 0; i + 1 < wanted_.size(); ++i) {
            wanted_[i] = table_.horizontalHeader()->sectionSize(static_cast<int>(i));
        }
    }
    wanted_[static_cast<std::size_t>(section)] = width;
    fit();
}

std::vector<int> TableColumnWidths::natural() const
{
    std::vector<int> widths;
    for (std::size_t i = 0; i < model_.columns().size(); ++i) {
        const int title = table_.horizontalHeader()->sectionSizeHint(static_cast<int>(i));
        const int content = model_.columns()[i].kind == TableColumn::Kind::CheckBox
                                ? delegate_.checkColumnWidth()
                                : naturalTextWidth(i);
        widths.push_back(std::max(title, content));
    }
    return widths;
}

int TableColumnWidths::naturalTextWidth(std::size_t column) const
{
    const auto metrics = table_.fontMetrics();
    const int letter = metrics.averageCharWidth();
    std::vector<int> widths;
    const auto rows =
        model_.isAsking() ? std::min(model_.rows().sourceRowCount(), kSampledRows) : 0;
    for (std::size_t row = 0; row < rows; ++row) {
        const auto text = model_.sourceText(row, column);
        if (!text.isEmpty()) {
            widths.push_back(metrics.horizontalAdvance(text.left(qsizetype{2} * kMostLetters)));
        }
    }
    int width = 0;
    if (!widths.empty()) {
        // Ignore the longest twentieth; a tool tip shows texts that are cut.
        const auto most =
            widths.begin() + static_cast<std::ptrdiff_t>((widths.size() - 1) * 19 / 20);
        std::nth_element(widths.begin(), most, widths.end());
        width = *most;
    }
    return std::clamp(width, kLeastLetters * letter, kMostLetters * letter) +
           delegate_.textMargins() + letter;
}

bool TableColumnWidths::stretches(std::size_t column) const
{
    return wereResizedByUser_ ? column + 1 == wanted_.size()
                              : model_.columns()[column].kind == TableColumn::Kind::WideText;
}

}  // namespace dunmora
