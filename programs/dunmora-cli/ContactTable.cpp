#include "programs/dunmora-cli/ContactTable.h"

#include "engine/ContactsParser.h"
#include "programs/dunmora-cli/TerminalText.h"
#include "programs/dunmora-cli/TimeText.h"
#include "text/DisplayText.h"

#include <algorithm>
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

constexpr std::string_view kGap = "  ";
constexpr std::string_view kBold = "\x1b[1m";
constexpr std::string_view kRed = "\x1b[31m";
constexpr std::string_view kNormal = "\x1b[0m";

using Widths = std::array<std::size_t, kColumns.size()>;

/// The cell's text, safe to display: a view of the record or of `buffer`, which is overwritten.
std::string_view cellText(const ContactRecord& record, const ContactField& field,
                          std::string& buffer)
{
    buffer.clear();
    if (!field.isText()) {
        if (const auto time = record.objectForKey(field.key)) {
            appendLocalTime(buffer, std::get<std::chrono::sys_seconds>(*time));
        }
        return buffer;
    }
    const auto text = record.text(field.key);
    if (isPlainAscii(text)) {
        return text;
    }
    appendDisplayText(buffer, text);
    return buffer;
}

Widths measure(const ContactsParser& engine, const std::vector<UidSpan>& blocks)
{
    Widths widths{};
    for (std::size_t i = 0; i < kColumns.size(); ++i) {
        widths[i] = kColumns[i]->title.size();
    }
    std::string buffer;
    for (const auto& block : blocks) {
        for (const auto& uid : block) {
            const auto* const record = engine.contacts().find(uid);
            for (std::size_t i = 0; record != nullptr && i < kColumns.size(); ++i) {
                const auto width = displayWidth(cellText(*record, *kColumns[i], buffer));
                widths[i] = std::max(widths[i], std::min(width, kWidestColumn));
            }
        }
    }
    return widths;
}

void appendCell(std::string& out, std::string_view cell, std::size_t width)
{
    const auto taken = displayWidth(cell);
    out += kGap;
    out += cell;
    out.append(taken < width ? width - taken : 0, ' ');
}

/// Removes trailing padding and ends the line.
void endLine(std::string& out)
{
    while (out.ends_with(' ')) {
        out.pop_back();
    }
    out += '\n';
}

void appendTitles(std::string& out, const Widths& widths, Colour colour)
{
    out += colour == Colour::On ? kBold : "";
    out += "   ";
    for (std::size_t i = 0; i < kColumns.size(); ++i) {
        appendCell(out, kColumns[i]->title, i + 1 < kColumns.size() ? widths[i] : 0);
    }
    out += colour == Colour::On ? kNormal : "";
    endLine(out);
}

void appendPerson(std::string& out, std::string& buffer, const ContactRecord& record,
                  const Widths& widths, Colour colour)
{
    const bool isRed = record.isChecked() && colour == Colour::On;
    out += isRed ? kRed : "";
    out += record.isChecked() ? "[x]" : "[ ]";
    out += isRed ? kNormal : "";
    for (std::size_t i = 0; i < kColumns.size(); ++i) {
        appendCell(out, cellText(record, *kColumns[i], buffer),
                   i + 1 < kColumns.size() ? widths[i] : 0);
    }
    endLine(out);
}

}  // namespace

std::string contactTable(const ContactsParser& engine, const std::vector<UidSpan>& blocks,
                         Colour colour)
{
    std::string out;
    if (blocks.empty()) {
        return out;
    }
    const auto widths = measure(engine, blocks);
    appendTitles(out, widths, colour);
    std::string buffer;
    for (std::size_t i = 0; i < blocks.size(); ++i) {
        out += i > 0 ? "\n" : "";
        for (const auto& uid : blocks[i]) {
            if (const auto* const record = engine.contacts().find(uid)) {
                appendPerson(out, buffer, *record, widths, colour);
            }
        }
    }
    return out;
}

}  // namespace dunmora
