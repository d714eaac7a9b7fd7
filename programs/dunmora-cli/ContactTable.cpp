#include "programs/dunmora-cli/ContactTable.h"

#include "engine/ContactsParser.h"
#include "programs/dunmora-cli/TableLayout.h"
#include "programs/dunmora-cli/TimeText.h"
#include "review/SubstituteName.h"
#include "review/UniqueProperties.h"
#include "text/DisplayText.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace dunmora {

namespace {

// The check mark comes first and has no title. The uid comes last: it is the widest and needs no
// padding there.
constexpr auto kColumns = [] {
    std::array<const ContactField*, kContactFields.size() - 1> columns{};
    std::size_t count = 0;
    for (const auto& field : kContactFields) {
        if (field.kind != FieldKind::Uid && field.kind != FieldKind::Check) {
            columns[count++] = &field;
        }
    }
    columns[count] = &contactField(kContactUid);
    return columns;
}();

/// Wider cells overflow their column: one very long name must not widen every line.
constexpr std::size_t kWidestColumn = 40;

constexpr std::string_view kBold = "\x1b[1m";
constexpr std::string_view kDim = "\x1b[2m";
constexpr std::string_view kRed = "\x1b[31m";
constexpr std::string_view kNormal = "\x1b[0m";

/// The person's name when it replaces the blank first name.
std::string substituteName(const ContactRecord& record, const ContactField& field,
                           const TableCards& cards)
{
    return field.key == kContactFirstName ? substituteName(record, cards.cards) : std::string();
}

/// The cell's text, cut and safe to display: a view of the record or of `buffer`, which is
/// overwritten.
std::string_view cellText(const ContactRecord& record, const ContactField& field,
                          const TableCards& cards, std::string& buffer)
{
    buffer.clear();
    appendDisplayText(buffer, substituteName(record, field, cards));
    if (!buffer.empty()) {
        return buffer;
    }
    if (!field.isText()) {
        if (const auto time = record.objectForKey(field.key)) {
            appendLocalTime(buffer, std::get<std::chrono::sys_seconds>(*time));
        }
        return buffer;
    }
    const auto text = record.text(field.key);
    const auto shown = shownPart(text);
    const bool isCut = shown.size() < text.size();
    if (!isCut && isPlainAscii(text)) {
        return text;
    }
    appendDisplayText(buffer, shown);
    if (isCut) {
        buffer += kEllipsis;
    }
    return buffer;
}

TableLayout layoutOf(const ContactsParser& engine, const std::vector<UidSpan>& blocks,
                     const TableCards& cards)
{
    TableLayout layout(kColumns.size(), kWidestColumn);
    for (std::size_t i = 0; i < kColumns.size(); ++i) {
        layout.measure(i, kColumns[i]->title);
    }
    std::string buffer;
    for (const auto& block : blocks) {
        for (const auto& uid : block) {
            const auto* const record = engine.contacts().find(uid);
            for (std::size_t i = 0; record != nullptr && i < kColumns.size(); ++i) {
                layout.measure(i, cellText(*record, *kColumns[i], cards, buffer));
            }
        }
    }
    return layout;
}

void appendTitles(std::string& out, const TableLayout& layout, Colour colour)
{
    out += colour == Colour::On ? kBold : "";
    out += "   ";
    out += TableLayout::kGap;
    for (std::size_t i = 0; i < kColumns.size(); ++i) {
        layout.appendCell(out, i, kColumns[i]->title);
    }
    out += colour == Colour::On ? kNormal : "";
    TableLayout::endLine(out);
}

void appendPerson(std::string& out, std::string& buffer, const ContactRecord& record,
                  const TableLayout& layout, const TableCards& cards, Colour colour)
{
    const bool isDim = colour == Colour::On && hasBlankName(record);
    const bool isRed = record.isChecked() && colour == Colour::On;
    out += isRed ? kRed : "";
    out += record.isChecked() ? "[x]" : "[ ]";
    out += isRed ? kNormal : "";
    // The star takes the first blank of the gap.
    const bool isUnique = cards.unique.contains(record.text(kContactUid));
    out += isUnique ? "*" : "";
    out += TableLayout::kGap.substr(isUnique ? 1 : 0);
    for (std::size_t i = 0; i < kColumns.size(); ++i) {
        const bool isName = isDim && kColumns[i]->key == kContactFirstName;
        out += isName ? kDim : "";
        layout.appendCell(out, i, cellText(record, *kColumns[i], cards, buffer));
        out += isName ? kNormal : "";
    }
    TableLayout::endLine(out);
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
                         const TableCards& cards, Colour colour)
{
    std::string out;
    if (blocks.empty()) {
        return out;
    }
    const auto layout = layoutOf(engine, blocks, cards);
    appendTitles(out, layout, colour);
    std::string buffer;
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        out += i > 0 ? "\n" : "";
        for (const auto& uid : blocks[i]) {
            if (const auto* const record = engine.contacts().find(uid)) {
                appendPerson(out, buffer, *record, layout, cards, colour);
            }
        }
    }
    return out;
}

}  // namespace dunmora
