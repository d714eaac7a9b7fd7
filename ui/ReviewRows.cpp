#include "ui/ReviewRows.h"

#include "base/ContactFields.h"
#include "engine/ContactRecord.h"
#include "engine/ContactsParser.h"
#include "platform/Desktop.h"
#include "platform/TextFolding.h"
#include "review/PersonName.h"
#include "text/DisplayText.h"
#include "text/Utf8.h"
#include "ui/ContactFilter.h"
#include "ui/GroupedNumber.h"
#include "ui/NamePrefix.h"

#include <array>
#include <cstddef>
#include <utility>

namespace dunmora {

namespace {

using Kind = TableColumn::Kind;

constexpr Kind kindOf(const ContactField& field)
{
    if (field.kind == FieldKind::Check) {
        return Kind::CheckBox;
    }
    if (field.kind == FieldKind::Modified) {
        return Kind::Date;
    }
    return field.key == kContactFirstName || field.key == kContactLastName ? Kind::WideText
                                                                           : Kind::Text;
}

/// What follows a name must be read aloud, too.
constexpr std::size_t kMaxSpokenBytes = kMaxShownBytes / 2;

/// Every contact field but the uid, the check box first.
constexpr auto kColumns = [] {
    std::array<TableColumn, kContactFields.size() - 1> columns{};
    std::size_t count = 0;
    for (const bool wantsCheck : {true, false}) {
        for (const auto& field : kContactFields) {
            if (field.kind != FieldKind::Uid && (field.kind == FieldKind::Check) == wantsCheck) {
                columns[count++] = {field.key, field.title, kindOf(field)};
            }
        }
    }
    return columns;
}();

class ReviewFilter final : public RowFilter {
public:
    explicit ReviewFilter(ContactFilter filter) : filter_(std::move(filter)) {}

    bool matches(std::size_t row) override
    {
        const auto* const record = recordInRow(static_cast<std::ptrdiff_t>(row));
        return record != nullptr && filter_.matches(*record);
    }

    bool narrows(std::string_view earlier) const override
    {
        return filter_.narrows(ContactFilter(earlier, Desktop::current().textFolding));
    }

private:
    ContactFilter filter_;
};

std::optional<std::size_t> rowNamed(const NamePrefix& prefix, std::size_t first,
                                    const std::function<bool(std::size_t row)>& isShown)
{
    const auto rows = ContactsParser::parser().duplicates().size();
    for (std::size_t i = 0; i < rows; ++i) {
        const auto row = (first + i) % rows;
        const auto* const record = recordInRow(static_cast<std::ptrdiff_t>(row));
        if (record != nullptr &&
            (prefix.begins(record->text(kContactFirstName)) ||
             prefix.begins(record->text(kContactLastName))) &&
            isShown(row)) {
            return row;
        }
    }
    return std::nullopt;
}

/// The first letter when the text repeats nothing but that; empty otherwise.
std::string_view repeatedLetter(std::string_view typed)
{
    if (typed.empty()) {
        return {};
    }
    const auto letter = typed.substr(0, utf8CharacterAt(typed, 0).size);
    for (std::size_t position = 0; position < typed.size(); position += letter.size()) {
        if (typed.substr(position, letter.size()) != letter) {
            return {};
        }
    }
    return letter;
}

}  // namespace

ContactRecord* recordInRow(std::ptrdiff_t row)
{
    // A negative row becomes a huge unsigned index.
    return ContactsParser::parser().recordInRow(static_cast<std::size_t>(row));
}

std::span<const TableColumn> reviewColumns()
{
    return kColumns;
}

std::string_view titleOfColumn(std::string_view identifier)
{
    const auto* const found =
        std::find_if(kColumns.begin(), kColumns.end(),
                     [&](const TableColumn& column) { return column.identifier == identifier; });
    return found == kColumns.end() ? std::string_view() : found->title;
}

std::string_view leastText(std::string_view column)
{
    // The column of the note is no field.
    const auto* const found =
        std::find_if(kMatchFields.begin(), kMatchFields.end(),
                     [&](const ContactField* field) { return field->key == column; });
    const bool isCompared = found != kMatchFields.end() &&
                            ContactsParser::parser().searchedFields().test((*found)->match->place);
    return isCompared ? "+49 (711) 5550-1000" : std::string_view();
}

std::string copyText(std::size_t row, RowRange group)
{
    return "copy " + groupedNumber(row - group.first + 1) + " of " + groupedNumber(group.size);
}

std::string accessibleText(const ContactRecord& contact, std::string_view warning,
                           std::string_view substitute, std::string_view copy)
{
    const auto name = substitute.empty() ? personName(contact) : std::string(substitute);
    const auto shown = shownPart(name, kMaxSpokenBytes);
    auto text = windowText(shown);
    if (shown.size() < name.size()) {
        text += kEllipsis;
    }
    if (text.empty()) {
        // The windows show no uid anywhere.
        text = "no name";
    }
    text += copy.empty() ? "" : ", ";
    text += copy;
    text += contact.isChecked() ? ", marked for deletion" : ", kept";
    if (!warning.empty()) {
        text += ". ";
        text += warning;
    }
    return text;
}

std::string accessibleCellText(std::string_view title, std::optional<std::string_view> shown)
{
    std::string text(title);
    text += ": ";
    text += !shown ? "not shown yet" : shown->empty() ? "empty" : *shown;
    return text;
}

std::string countText(std::size_t found, std::size_t all)
{
    const auto count = groupedNumber(found) + " of " + groupedNumber(all) + " match";
    return found == 0 && all > 0 ? "No matches: " + count : count;
}

std::unique_ptr<RowFilter> reviewFilter(std::string_view typed)
{
    ContactFilter filter(typed, Desktop::current().textFolding);
    return filter.isEmpty() ? nullptr : std::make_unique<ReviewFilter>(std::move(filter));
}

std::optional<std::size_t> rowForTyping(std::string_view typed, std::size_t first,
                                        const std::function<bool(std::size_t row)>& isShown)
{
    const auto& folding = Desktop::current().textFolding;
    const auto row = rowNamed(NamePrefix(typed, folding), first, isShown);
    const auto letter = repeatedLetter(typed);
    return row || letter.empty() || letter.size() == typed.size()
               ? row
               : rowNamed(NamePrefix(letter, folding), first, isShown);
}

}  // namespace dunmora
