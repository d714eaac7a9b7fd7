#include "programs/dunmora-cli/ContactCsv.h"

#include "engine/ContactsParser.h"
#include "programs/dunmora-cli/TimeText.h"
#include "text/DisplayText.h"

#include <array>
#include <cstddef>
#include <string_view>

namespace dunmora {

namespace {

constexpr std::string_view kHeader =
    "group,check,uid,fname,lname,nickname,home,work,mobile,modified\r\n";

constexpr std::array kTextColumns{kContactUid,      kContactFirstName, kContactLastName,
                                  kContactNickname, kContactHome,      kContactWork,
                                  kContactMobile};

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
    out += record.isChecked() ? ",true," : ",false,";
    for (const auto key : kTextColumns) {
        const auto text = record.text(key);
        if (texts == CsvTexts::Printable) {
            appendField(out, displayText(text));
        } else {
            appendField(out, text);
        }
        out += ',';
    }
    if (const auto modified = record.objectForKey(kContactModified)) {
        appendUtcTime(out, std::get<std::chrono::sys_seconds>(*modified));
    }
    out += "\r\n";
}

}  // namespace

std::string contactCsv(const ContactsParser& engine, std::span<const DuplicateGroup> groups,
                       CsvTexts texts)
{
    std::string out(kHeader);
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
