#include "programs/dunmora-cli/ContactTable.h"

#include "engine/ContactsParser.h"
#include "programs/dunmora-cli/ContactCells.h"
#include "programs/dunmora-cli/ContactTableFit.h"
#include "programs/dunmora-cli/FieldLines.h"
#include "programs/dunmora-cli/TableLayout.h"
#include "programs/dunmora-cli/TerminalText.h"
#include "review/SubstituteName.h"
#include "review/UniqueProperties.h"

#include <algorithm>
#include <array>
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
    ContactCells cells;
    /// As wide as `kNoMark`.
    std::string mark;
    bool isNameDim = false;
};

/// Calls `visit` for the record of everyone whom the engine has.
template <typename Visit>
void forEachRecord(const ContactsParser& engine, UidSpan uids, const Visit& visit)
{
    for (const auto& uid : uids) {
        if (const auto* const record = engine.contacts().find(uid)) {
            visit(*record);
        }
    }
}

ColumnWidths widestCells(const ContactsParser& engine, const std::vector<UidSpan>& blocks,
                         const TableCards& cards)
{
    ColumnWidths widths{};
    ContactCells cells;
    for (const auto& block : blocks) {
        forEachRecord(engine, block, [&](const ContactRecord& record) {
            cells.read(record, cards.cards);
            for (std::size_t i = 0; i < widths.size(); ++i) {
                widths[i] = std::max(widths[i], displayWidth(cells.texts[i]));
            }
        });
    }
    return widths;
}

std::string markOf(const ContactRecord& record, bool isUnique, Colour colour)
{
    const bool isRed = record.isChecked() && colour == Colour::On;
    std::string mark(isRed ? kRed : "");
    mark += record.isChecked() ? "[x]" : "[ ]";
    mark += isRed ? kNormal : "";
    mark += isUnique ? "* " : "  ";
    return mark;
}

/// Appends a piece of a cell, padded to the column's width unless it is the last one.
void appendCell(std::string& out, std::string_view text, std::size_t width, bool isLast)
{
    out += text;
    if (isLast) {
        return;
    }
    const auto taken = displayWidth(text);
    out.append(taken < width ? width - taken : 0, ' ');
    out += TableLayout::kGap;
}

void appendTitles(std::string& out, const ContactTableFit& fit, Colour colour)
{
    out += colour == Colour::On ? kBold : "";
    out += kNoMark;
    for (std::size_t i = 0; i < kTableColumns.size(); ++i) {
        if (fit.isShown(i)) {
            appendCell(out, kTableColumns[i]->title, fit.widths[i], fit.isLast(i));
        }
    }
    out += colour == Colour::On ? kNormal : "";
    TableLayout::endLine(out);
}

/// Appends the person as one line, or several when a cell continues.
void appendRow(std::string& out, DrawnPerson& person, const ContactTableFit& fit)
{
    std::array<std::string, kTableColumns.size()> cut;
    auto& texts = person.cells.texts;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        texts[i] = fit.shownText(i, texts[i], cut[i]);
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
            appendCell(out, piece, fit.widths[i], fit.isLast(i));
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
        lines.add(field.title, person.cells.texts[i], breaks, isDim ? kDim : "",
                  isDim ? kNormal : "");
    }
    lines.append(out, person.mark);
}

}  // namespace

TableCards::TableCards(const ContactsParser& engine, const UniqueProperties& properties,
                       const CardSource* source)
    : cards(source)
{
    const auto& uids = engine.duplicates();
    for (std::size_t row = 0; row < uids.size(); ++row) {
        if (properties.has(row)) {
            unique.insert(uids[row]);
        }
    }
}

std::string contactTable(const ContactsParser& engine, const std::vector<UidSpan>& blocks,
                         const TableCards& cards, const TableStyle& style)
{
    std::string out;
    if (blocks.empty()) {
        return out;
    }
    const ContactTableFit fit(widestCells(engine, blocks, cards), style, kNoMark.size());
    if (!fit.isStacked) {
        appendTitles(out, fit, style.colour);
    }
    DrawnPerson person;
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        out += i > 0 ? "\n" : "";
        forEachRecord(engine, blocks[i], [&](const ContactRecord& record) {
            person.cells.read(record, cards.cards);
            const bool isUnique = cards.unique.contains(record.text(kContactUid));
            person.mark = markOf(record, isUnique, style.colour);
            person.isNameDim = style.colour == Colour::On && hasBlankName(record);
            if (fit.isStacked) {
                appendStacked(out, person, *style.width);
            } else {
                appendRow(out, person, fit);
            }
        });
    }
    std::string_view remark = fit.remark;
    out += remark.empty() ? "" : "\n";
    while (!remark.empty()) {
        out += takeLine(remark, *style.width);
        out += '\n';
    }
    return out;
}

}  // namespace dunmora
