#include "programs/dunmora-cli/ContactCsv.h"

#include "engine/ContactsParser.h"
#include "programs/dunmora-cli/TimeText.h"
#include "text/DisplayText.h"

#include <cstddef>
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

void appendPerson(std::string& out, const ContactRecord& record, std::size_t group, CsvTexts texts)
{
    out += std::to_string(group);
    out += record.isChecked() ? ",true" : ",false";
    forEachColumn([&](const ContactField& field) {
        out += ',';
        if (field.isText()) {
            const auto text = record.text(field.key);
            if (texts == CsvTexts::Printable) {
                appendField(out, displayText(text));
            } else {
                appendField(out, text);
            }
        } else if (const auto time = record.objectForKey(field.key)) {
            appendUtcTime(out, std::get<std::chrono::sys_seconds>(*time));
        }
    });
    out += kLineEnd;
}

}  // namespace

std::string contactCsv(const ContactsParser& engine, std::span<const DuplicateGroup> groups,
                       CsvTexts texts)
{
    std::string out = "group,";
    out += kContactCheck;
    forEachColumn([&](const ContactField& field) {
        out += ',';
        out += field.key;
    });
    out += kLineEnd;
    for (std::size_t i = 0; i < groups.size(); ++i) {
        for (const auto& uid : groups[i].uids) {
            if (const auto* const record = engine.contacts().find(uid)) {
                appendPerson(out, *record, i + 1, texts);
            }
        }
    }
    return out;
}

}  // namespace dunmora
