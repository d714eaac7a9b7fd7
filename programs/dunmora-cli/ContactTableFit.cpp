#include "programs/dunmora-cli/ContactTableFit.h"

#include "programs/dunmora-cli/TableFit.h"
#include "programs/dunmora-cli/TableLayout.h"
#include "programs/dunmora-cli/TableStyle.h"
#include "programs/dunmora-cli/TerminalText.h"
#include "text/DisplayText.h"

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

namespace dunmora {

namespace {

/// One very long name must not widen every line.
constexpr std::size_t kWidestColumn = 40;
/// In a narrower terminal each value has a line of its own.
constexpr std::size_t kNarrowestTable = 60;
constexpr std::string_view kDate = "2024-05-01";

/// The columns that may be left out, the first one first.
constexpr std::array kExpendable{kContactUid,  kContactModified, kContactNickname,
                                 kContactHome, kContactWork,     kContactMobile};

/// Whether the column's values are not cut.
bool isEssential(const ContactField& field, const TableStyle& style)
{
    return field.match && style.match.test(field.match->place);
}

std::size_t leastWidth(const ContactField& field, std::size_t width, bool isEssential)
{
    // The last digits of a phone number tell the most.
    constexpr std::size_t kEndOfPhoneNumber = 8;
    constexpr std::size_t kWholePhoneNumber = 18;
    if (field.kind == FieldKind::Uid) {
        return width;
    }
    const auto least = isEssential                         ? kWholePhoneNumber
                       : field.kind == FieldKind::Modified ? kDate.size() + 1
                                                           : kEndOfPhoneNumber;
    return std::min(width, std::max(least, field.title.size()));
}

ColumnNeed needOf(const ContactField& field, std::size_t widestCell, const TableStyle& style)
{
    ColumnNeed need;
    need.width = widestCell == 0 ? 0 : std::max(widestCell, field.title.size());
    need.isEssential = isEssential(field, style);
    need.least = leastWidth(field, need.width, need.isEssential);
    const auto* const place = std::find(kExpendable.begin(), kExpendable.end(), field.key);
    if (place != kExpendable.end() && !need.isEssential) {
        need.sacrifice = static_cast<std::size_t>(place - kExpendable.begin());
    }
    return need;
}

/// The widths in `available` columns; nullopt when there is not enough room for a table.
std::optional<ColumnWidths> fitted(const ColumnWidths& widestCells, const TableStyle& style,
                                   std::size_t available)
{
    std::vector<ColumnNeed> needs;
    std::size_t total = 0;
    for (std::size_t i = 0; i < widestCells.size(); ++i) {
        needs.push_back(needOf(*kTableColumns[i], widestCells[i], style));
        const auto width = needs.back().width;
        total += width + (total > 0 && width > 0 ? TableLayout::kGap.size() : 0);
    }
    for (std::size_t i = 0; total > available && i < needs.size(); ++i) {
        if (kTableColumns[i]->kind != FieldKind::Uid) {
            needs[i].width = std::min(needs[i].width, kWidestColumn);
        }
    }
    const auto widths = fittingWidths(std::move(needs), available, TableLayout::kGap.size());
    if (!widths) {
        return std::nullopt;
    }
    ColumnWidths result{};
    std::copy(widths->begin(), widths->end(), result.begin());
    return result;
}

}  // namespace

ContactTableFit::ContactTableFit(const ColumnWidths& widestCells, const TableStyle& style,
                                 std::size_t margin)
{
    if (style.width) {
        const auto width = *style.width;
        const auto fit =
            width < kNarrowestTable ? std::nullopt : fitted(widestCells, style, width - margin);
        isStacked = !fit;
        widths = fit.value_or(ColumnWidths{});
    }
    std::string leftOut;
    bool isCut = false;
    for (std::size_t i = 0; i < widths.size() && !isStacked; ++i) {
        const auto& field = *kTableColumns[i];
        if (!style.width) {
            widths[i] = std::max(std::min(widestCells[i], kWidestColumn), field.title.size());
            excess_[i] = Excess::Overflows;
        } else if (isEssential(field, style)) {
            excess_[i] = Excess::Continues;
        } else {
            excess_[i] = field.kind == FieldKind::Phone      ? Excess::LosesBeginning
                         : field.kind == FieldKind::Modified ? Excess::LosesTime
                                                             : Excess::LosesEnd;
            isCut = isCut || widths[i] < widestCells[i];
        }
        if (isShown(i)) {
            last_ = i;
        } else if (widestCells[i] > 0) {
            leftOut += leftOut.empty() ? "Not shown: " : ", ";
            leftOut += field.title;
        }
    }
    if (isCut) {
        remark = leftOut + (leftOut.empty() ? "" : ". ") + "Use --wide to show everything.";
    }
}

std::string_view ContactTableFit::shownText(std::size_t column, const ContactCell& cell,
                                            std::string& buffer) const
{
    const auto width = widths[column];
    if (width == 0 || excess_[column] == Excess::Overflows ||
        excess_[column] == Excess::Continues || cell.width <= width) {
        return cell.text;
    }
    if (excess_[column] == Excess::LosesTime) {
        buffer = std::string(cell.text.substr(0, kDate.size())) + std::string(kEllipsis);
    } else {
        buffer = excess_[column] == Excess::LosesBeginning ? withoutBeginning(cell.text, width)
                                                           : withoutEnd(cell.text, width);
    }
    return buffer;
}

std::string_view ContactTableFit::takePiece(std::size_t column, std::string_view& text) const
{
    if (excess_[column] == Excess::Continues) {
        return takeLine(text, widths[column]);
    }
    return std::exchange(text, {});
}

}  // namespace dunmora
