#include "programs/dunmora-cli/ContactJson.h"

#include "engine/ContactsParser.h"
#include "programs/dunmora-cli/TimeText.h"
#include "review/UniqueProperties.h"

// Written by hand rather than through a document tree: tens of thousands of people are printed in
// a fraction of the time, and the shape never changes.

namespace dunmora {

namespace {

/// Appends a list's items with commas between them.
template <typename Items, typename AppendItem>
void appendList(std::string& out, const Items& items, const AppendItem& appendItem)
{
    out += '[';
    bool first = true;
    for (const auto& item : items) {
        if (!first) {
            out += ',';
        }
        first = false;
        appendItem(item);
    }
    out += ']';
}

void appendCounts(std::string& out, const ContactsParser& engine)
{
    out += R"(,"contacts":)";
    out += std::to_string(engine.contacts().size());
    out += R"(,"duplicates":)";
    out += std::to_string(engine.duplicates().size());
}

void appendValue(std::string& out, const ContactRecord& record, const ContactField& field,
                 JsonCharacters characters)
{
    switch (field.kind) {
    case FieldKind::Uid:
    case FieldKind::Name:
    case FieldKind::Phone:
        appendJsonText(out, record.text(field.key), characters);
        break;
    case FieldKind::Modified:
        if (const auto time = record.objectForKey(field.key)) {
            out += '"';
            appendUtcTime(out, std::get<std::chrono::sys_seconds>(*time));
            out += '"';
        } else {
            out += "null";
        }
        break;
    case FieldKind::Check:
        out += record.isChecked() ? "true" : "false";
        break;
    }
}

void appendOnlyHere(std::string& out, const std::vector<OnlyHere>& properties,
                    JsonCharacters characters)
{
    out += R"(,"only_here":)";
    appendList(out, properties, [&](const OnlyHere& only) {
        out += R"({"property":)";
        appendJsonText(out, only.property, characters);
        out += R"(,"value":)";
        appendJsonText(out, only.value, characters);
        out += '}';
    });
}

void appendRow(std::string& out, const ContactRecord& record, const PersonSource* source,
               const std::vector<OnlyHere>& onlyHere, JsonCharacters characters)
{
    char before = '{';
    for (const auto& field : kContactFields) {
        out += before;
        before = ',';
        out += '"';
        out += field.key;
        out += "\":";
        appendValue(out, record, field, characters);
    }
    out += R"(,"source":)";
    if (source == nullptr) {
        out += "null";
    } else {
        appendJsonText(out, source->address, characters);
    }
    appendOnlyHere(out, onlyHere, characters);
    out += '}';
}

}  // namespace

std::string reviewJson(const ContactsParser& engine, std::span<const DuplicateGroup> groups,
                       const UniqueProperties& cards, const ReviewHead& head,
                       JsonCharacters characters)
{
    std::string out = R"({"schema":1,"addressBook":)";
    appendJsonText(out, head.addressBook, characters);
    out += R"(,"match":)";
    appendList(out, head.match,
               [&](std::string_view name) { appendJsonText(out, name, characters); });
    appendCounts(out, engine);
    out += R"(,"skipped":)";
    out += std::to_string(head.skipped);
    out += R"(,"groups":)";
    appendList(out, groups, [&](const DuplicateGroup& group) {
        out += R"({"key":)";
        appendJsonText(out, group.key, characters);
        out += R"(,"rows":)";
        auto row = group.firstRow;
        appendList(out, group.uids, [&](const std::string& uid) {
            appendRow(out, *engine.contacts().find(uid), cards.source(row), cards.onlyHere(row),
                      characters);
            ++row;
        });
        out += '}';
    });
    out += "}\n";
    return out;
}

std::string deletionJson(const ContactsParser& engine, std::span<const std::string> deleted,
                         bool dryRun, JsonCharacters characters)
{
    std::string out = R"({"schema":1,"dryRun":)";
    out += dryRun ? "true" : "false";
    out += R"(,"deleted":)";
    appendList(out, deleted, [&](const std::string& uid) { appendJsonText(out, uid, characters); });
    appendCounts(out, engine);
    out += "}\n";
    return out;
}

}  // namespace dunmora
