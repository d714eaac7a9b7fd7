#include "programs/dunmora-cli/ContactCsv.h"

#include "engine/ContactsParser.h"
#include "programs/dunmora-cli/TextPieces.h"
#include "programs/dunmora-cli/TimeText.h"
#include "review/UniqueProperties.h"
#include "text/DisplayText.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace dunmora {

namespace {

constexpr std::string_view kLineEnd = "\r\n";

/// The fields in their order; the check mark comes right after the group.
template <typename Append>
void forEachColumn(const Append& append)
{
    for (const auto& field : kContactFields) {
        if (field.kind != FieldKind::Check) {
            append(field);
        }
    }
}

void appendField(std::string& out, std::string_view text)
{
    if (text.find_first_of(",\"\r\n") == std::string_view::npos) {
        out += text;
        return;
    }
    out += '"';
    for (const char c : text) {
        out += c;
        if (c == '"') {
            out += c;
        }
    }
    out += '"';
}

void appendText(std::string& out, std::string_view text, CsvTexts texts)
{
    if (texts == CsvTexts::Printable) {
        appendField(out, displayText(text));
    } else {
        appendField(out, text);
    }
}

void appendPerson(std::string& out, const ContactRecord& record, std::size_t group,
                  const PersonSource* source, CsvTexts texts)
{
    out += std::to_string(group);
    out += record.isChecked() ? ",true" : ",false";
    forEachColumn([&](const ContactField& field) {
        out += ',';
        if (field.isText()) {
            appendText(out, record.text(field.key), texts);
        } else if (const auto time = record.objectForKey(field.key)) {
            appendUtcTime(out, std::get<std::chrono::sys_seconds>(*time));
        }
    });
    out += ',';
    appendText(out, source == nullptr ? "" : source->address, texts);
    out += kLineEnd;
}

}  // namespace

void printContactCsv(TextPieces& out, const ContactsParser& engine,
                     std::span<const DuplicateGroup> groups, const UniqueProperties& cards,
                     CsvTexts texts)
{
    auto& text = out.text();
    text += "group,";
    text += kContactCheck;
    forEachColumn([&](const ContactField& field) {
        text += ',';
        text += field.key;
    });
    text += ",source";
    text += kLineEnd;
    for (std::size_t i = 0; i < groups.size(); ++i) {
        const auto end = groups[i].firstRow + groups[i].uids.size();
        for (auto row = groups[i].firstRow; row < end; ++row) {
            if (const auto* const record = engine.recordInRow(row)) {
                appendPerson(text, *record, i + 1, cards.source(row), texts);
                out.printLong();
            }
        }
    }
}

}  // namespace dunmora
