#include "programs/dunmora-cli/ContactJson.h"

#include "engine/ContactsParser.h"
#include "programs/dunmora-cli/DeletionWarnings.h"
#include "programs/dunmora-cli/TextPieces.h"
#include "programs/dunmora-cli/TimeText.h"
#include "review/GroupWarnings.h"
#include "review/UniqueProperties.h"
#include "text/TextHash.h"

#include <algorithm>
#include <array>
#include <unordered_set>

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

struct NamedWarning {
    GroupWarning warning;
    std::string_view name;
};

constexpr std::array kWarnings{
    NamedWarning{GroupWarning::LosesEveryCopy, "loses_every_copy"},
    NamedWarning{GroupWarning::SharesOnlyEmptyFields, "shares_only_empty_fields"}};
// Also the name of the list of what that is.
constexpr std::string_view kOnlyHereName = "only_here";

/// Appends the counts of people with each warning, in the order of `kWarnings`, and of those who
/// hold something unique.
void appendWarningCounts(std::string& out, const std::array<std::size_t, kWarnings.size()>& people,
                         std::size_t onlyHere)
{
    out += R"(,"warnings":{)";
    for (std::size_t i = 0; i < kWarnings.size(); ++i) {
        out += '"';
        out += kWarnings[i].name;
        out += "\":" + std::to_string(people[i]) + ',';
    }
    out += '"';
    out += kOnlyHereName;
    out += "\":" + std::to_string(onlyHere) + '}';
}

/// Appends the names of the warnings about one row; `has` returns whether it has a `GroupWarning`.
template <typename Has>
void appendRowWarnings(std::string& out, const Has& has, bool holdsSomethingUnique)
{
    out += R"(,"warnings":[)";
    const auto append = [&](std::string_view name) {
        out += out.ends_with('[') ? "\"" : ",\"";
        out += name;
        out += '"';
    };
    for (const auto& [warning, name] : kWarnings) {
        if (has(warning)) {
            append(name);
        }
    }
    if (holdsSomethingUnique) {
        append(kOnlyHereName);
    }
    out += ']';
}

void appendRemarks(std::string& out, std::span<const std::string> remarks,
                   JsonCharacters characters)
{
    out += R"(,"remarks":)";
    appendList(out, remarks,
               [&](const std::string& remark) { appendJsonText(out, remark, characters); });
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

/// Appends a row up to its warnings.
void appendContact(std::string& out, const ContactRecord& record, const PersonSource* source,
                   JsonCharacters characters)
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
}

}  // namespace

void printReviewJson(TextPieces& out, const ContactsParser& engine,
                     std::span<const DuplicateGroup> groups, const GroupWarnings& warnings,
                     const UniqueProperties& cards, const ReviewHead& head,
                     JsonCharacters characters)
{
    auto& text = out.text();
    text += R"({"schema":1,"addressBook":)";
    appendJsonText(text, head.addressBook, characters);
    text += R"(,"match":)";
    appendList(text, head.match,
               [&](std::string_view name) { appendJsonText(text, name, characters); });
    appendCounts(text, engine);
    text += R"(,"skipped":)";
    text += std::to_string(head.skipped);
    appendRemarks(text, head.remarks, characters);
    appendWarningCounts(
        text, {warnings.peopleWhoLoseEveryCopy(), warnings.peopleWhoShareOnlyEmptyFields()},
        cards.count());
    text += R"(,"groups":)";
    appendList(text, groups, [&](const DuplicateGroup& group) {
        text += R"({"key":)";
        appendJsonText(text, group.key(), characters);
        text += R"(,"rows":)";
        auto row = group.firstRow;
        appendList(text, group.uids, [&](const std::string& /*uid*/) {
            appendContact(text, *engine.recordInRow(row), cards.source(row), characters);
            appendRowWarnings(
                text, [&](GroupWarning warning) { return warnings.hasWarning(row, warning); },
                cards.has(row));
            appendOnlyHere(text, cards.onlyHere(row), characters);
            text += '}';
            ++row;
            out.printLong();
        });
        text += '}';
    });
    text += "}\n";
}

std::string deletionJson(const ContactsParser& engine, std::span<const std::string> deleted,
                         bool dryRun, const DeletionWarnings& warnings,
                         std::span<const std::string> remarks, JsonCharacters characters)
{
    std::string out = R"({"schema":1,"dryRun":)";
    out += dryRun ? "true" : "false";
    out += R"(,"deleted":)";
    appendList(out, deleted, [&](const std::string& uid) { appendJsonText(out, uid, characters); });
    appendCounts(out, engine);
    appendRemarks(out, remarks, characters);
    appendWarningCounts(out, {warnings.losesEveryCopy, warnings.sharesOnlyEmptyFields},
                        warnings.onlyHere);
    const std::unordered_set<std::string_view, TextHash> uids(deleted.begin(), deleted.end());
    std::vector<const DeletionWarnings::Row*> rows;
    for (const auto& row : warnings.rows) {
        if (uids.contains(row.uid)) {
            rows.push_back(&row);
        }
    }
    out += R"(,"rows":)";
    appendList(out, rows, [&](const DeletionWarnings::Row* row) {
        out += R"({"uid":)";
        appendJsonText(out, row->uid, characters);
        appendRowWarnings(
            out,
            [&](GroupWarning warning) {
                return std::find(row->warnings.begin(), row->warnings.end(), warning) !=
                       row->warnings.end();
            },
            row->holdsSomethingUnique);
        appendOnlyHere(out, row->onlyHere, characters);
        out += '}';
    });
    out += "}\n";
    return out;
}

}  // namespace dunmora
