#include "programs/dunmora-cli/ContactTable.h"

#include "engine/ContactRecord.h"
#include "programs/dunmora-cli/ContactCells.h"
#include "programs/dunmora-cli/ContactTableFit.h"
#include "programs/dunmora-cli/FieldLines.h"
#include "programs/dunmora-cli/TableLayout.h"
#include "programs/dunmora-cli/TerminalText.h"
#include "programs/dunmora-cli/TextPieces.h"
#include "review/SubstituteName.h"

#include <array>
#include <string>
#include <string_view>

namespace dunmora {

namespace {

/// Below a check mark, its star and a blank.
constexpr std::string_view kNoMark = "     ";

constexpr std::string_view kBold = "\x1b[1m";
constexpr std::string_view kDim = "\x1b[2m";
constexpr std::string_view kRed = "\x1b[31m";
constexpr std::string_view kNormal = "\x1b[0m";

/// The person to draw.
struct DrawnPerson {
    ContactRow cells;
    /// As wide as `kNoMark`.
    std::string mark;
    bool isNameDim = false;
};

std::string markOf(const ContactRecord& record, bool isUnique, Colour colour)
{
    const bool isRed = record.isChecked() && colour == Colour::On;
    std::string mark(isRed ? kRed : "");
    mark += record.isChecked() ? "[x]" : "[ ]";
    mark += isRed ? kNormal : "";
    mark += isUnique ? "* " : "  ";
    return mark;
}

/// Appends a text of this width, padded to the column's width unless it is the last one.
void appendCell(std::string& out, ContactCell cell, std::size_t width, bool isLast)
{
    out += cell.text;
    if (isLast) {
        return;
    }
    out.append(cell.width < width ? width - cell.width : 0, ' ');
    out += TableLayout::kGap;
}

/// The piece of a cell, which may be the whole cell.
ContactCell measured(std::string_view piece, const ContactCell& whole)
{
    const bool isWhole = piece.data() == whole.text.data() && piece.size() == whole.text.size();
    return {piece, isWhole ? whole.width : displayWidth(piece)};
}

void appendTitles(std::string& out, const ContactTableFit& fit, Colour colour)
{
    out += colour == Colour::On ? kBold : "";
    out += kNoMark;
    for (std::size_t i = 0; i < kTableColumns.size(); ++i) {
        if (fit.isShown(i)) {
            const auto title = kTableColumns[i]->title;
            appendCell(out, {title, displayWidth(title)}, fit.widths[i], fit.isLast(i));
        }
    }
    out += colour == Colour::On ? kNormal : "";
    TableLayout::endLine(out);
}

/// Appends the person as one line, or several when a cell continues.
void appendRow(std::string& out, const DrawnPerson& person, const ContactTableFit& fit)
{
    std::array<std::string, kTableColumns.size()> cut;
    std::array<std::string_view, kTableColumns.size()> texts;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        texts[i] = fit.shownText(i, person.cells[i], cut[i]);
    }
    std::string_view mark = person.mark;
    for (bool hasMore = true; hasMore;) {
        hasMore = false;
        out += mark;
        mark = kNoMark;
        for (std::size_t i = 0; i < texts.size(); ++i) {
            if (!fit.isShown(i)) {
                continue;
            }
            const auto piece = fit.takePiece(i, texts[i]);
            hasMore = hasMore || !texts[i].empty();
            const bool isDim =
                person.isNameDim && kTableColumns[i]->key == kContactFirstName && !piece.empty();
            out += isDim ? kDim : "";
            appendCell(out, measured(piece, person.cells[i]), fit.widths[i], fit.isLast(i));
            out += isDim ? kNormal : "";
        }
        TableLayout::endLine(out);
    }
}

/// Appends the person with a line for each value.
void appendStacked(std::string& out, const DrawnPerson& person, std::size_t width)
{
    FieldLines lines(width, kNoMark);
    for (std::size_t i = 0; i < kTableColumns.size(); ++i) {
        const auto& field = *kTableColumns[i];
        const auto breaks = field.kind == FieldKind::Uid ? FieldLines::Break::Never
                                                         : FieldLines::Break::WhereNeeded;
        const bool isDim = person.isNameDim && field.key == kContactFirstName;
        lines.add(field.title, person.cells[i].text, breaks, isDim ? kDim : "",
                  isDim ? kNormal : "");
    }
    lines.append(out, person.mark);
}

}  // namespace

void printContactTable(TextPieces& out, const TablePeople& table, const CardSource* cards,
                       const TableStyle& style)
{
    if (table.blockEnds.empty()) {
        return;
    }
    ContactCells cells(cards);
    for (const auto& person : table.people) {
        cells.add(*person.record);
    }
    const ContactTableFit fit(cells.widest(), style, kNoMark.size());
    auto& text = out.text();
    if (!fit.isStacked) {
        appendTitles(text, fit, style.colour);
    }
    DrawnPerson drawn;
    std::size_t index = 0;
    for (const auto end : table.blockEnds) {
        text += index > 0 ? "\n" : "";
        for (; index < end; ++index) {
            const auto& [record, holdsUnique] = table.people[index];
            drawn.cells = cells.next(*record);
            drawn.mark = markOf(*record, holdsUnique, style.colour);
            drawn.isNameDim = style.colour == Colour::On && hasBlankName(*record);
            if (fit.isStacked) {
                appendStacked(text, drawn, *style.width);
            } else {
                appendRow(text, drawn, fit);
            }
            out.printLong();
        }
    }
    std::string_view remark = fit.remark;
    text += remark.empty() ? "" : "\n";
    while (!remark.empty()) {
        text += takeLine(remark, *style.width);
        text += '\n';
    }
}

}  // namespace dunmora
