#pragma once

#include "platform/TableView.h"

#include <array>
#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora::test {

/// Rows in memory that count a table's questions and record its edits. A filter finds the typed
/// text verbatim anywhere in a row; typing ahead finds it at the start of a first name.
class CountedRows final : public TableViewDataSource, public TableViewDelegate {
public:
    struct Row {
        std::map<std::string, std::string, std::less<>> texts;
        std::optional<std::chrono::sys_seconds> modified;
        bool isChecked = false;
        RowStyle style;
    };

    struct Edit {
        std::size_t row = 0;
        std::string column;
        bool isChecked = false;

        bool operator==(const Edit&) const = default;
    };

    std::span<const TableColumn> columns() override
    {
        using Kind = TableColumn::Kind;
        static constexpr std::array<TableColumn, 8> kColumns{{
            {"check", "Delete", Kind::CheckBox},
            {"fname", "First Name", Kind::WideText},
            {"lname", "Last Name", Kind::WideText},
            {"nickname", "Nickname"},
            {"home", "Home"},
            {"work", "Work"},
            {"mobile", "Mobile"},
            {"modified", "Modified", Kind::Date},
        }};
        return kColumns;
    }

    std::size_t numberOfRows() override
    {
        ++countQuestions;
        return rows.size();
    }

    std::optional<CellValue> objectValue(std::string_view column, std::ptrdiff_t row) override
    {
        ++cellQuestions;
        if (static_cast<std::size_t>(row) >= rows.size()) {
            return std::nullopt;
        }
        const auto& asked = rows[static_cast<std::size_t>(row)];
        if (column == "check") {
            return asked.isChecked;
        }
        if (column == "modified") {
            return asked.modified ? std::optional<CellValue>(*asked.modified) : std::nullopt;
        }
        const auto found = asked.texts.find(column);
        return found == asked.texts.end()
                   ? std::nullopt
                   : std::optional<CellValue>(std::string_view(found->second));
    }

    void setObjectValue(const CellValue& value, std::string_view column,
                        std::ptrdiff_t row) override
    {
        const auto edited = static_cast<std::size_t>(row);
        edits.push_back({edited, std::string(column), std::get<bool>(value)});
        rows[edited].isChecked = !rows[edited].isChecked;
        calls.emplace_back("edit");
    }

    void tableViewSelectionDidChange() override { ++selectionChanges; }

    RowStyle styleOfRow(std::size_t row) override
    {
        ++styleQuestions;
        return rows[row].style;
    }

    std::string wholeWarning(std::size_t row) override
    {
        ++warningQuestions;
        return rows[row].style.warning.text + moreWarning;
    }

    std::string_view noteTitle() override { return notesTitle; }

    std::string_view leastText(std::string_view column) override
    {
        return column == leastColumn ? leastColumnText : std::string_view();
    }

    void selectedRowDidChange() override { ++selectedRowChanges; }

    void rowsEdited(std::span<const std::size_t> edited) override
    {
        editedRows.emplace_back(edited.begin(), edited.end());
        calls.emplace_back("rowsEdited");
        onRowsEdited();
    }

    RowRange rowsTogetherWith(std::size_t row) override
    {
        const auto isInGroup = [&](std::size_t other) {
            return rows[other].style.group == rows[row].style.group;
        };
        auto first = row;
        auto end = row + 1;
        while (showsGroups && first > 0 && isInGroup(first - 1)) {
            --first;
        }
        while (showsGroups && end < rows.size() && isInGroup(end)) {
            ++end;
        }
        return {first, end - first};
    }

    std::unique_ptr<RowFilter> rowFilter(std::string_view typed) override
    {
        if (typed.empty() && !filteredName.empty()) {
            return std::make_unique<TextFilter>(*this, filteredName);
        }
        return typed.empty() ? nullptr : std::make_unique<TextFilter>(*this, typed);
    }

    std::optional<std::size_t>
    rowForTyping(std::string_view typed, std::size_t first,
                 const std::function<bool(std::size_t row)>& isShown) override
    {
        typings.push_back({std::string(typed), first});
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const auto row = (first + i) % rows.size();
            const auto& texts = rows[row].texts;
            const bool begins = texts.at("fname").starts_with(typed);
            if (begins && isShown(row)) {
                return row;
            }
        }
        return std::nullopt;
    }

    std::string countText(std::size_t shown, std::size_t all) override
    {
        return std::to_string(shown) + '/' + std::to_string(all);
    }

    std::string accessibleCellText(std::string_view title,
                                   std::optional<std::string_view> shown) override
    {
        const std::string text(shown.value_or("blank"));
        return std::string(title) + '=' + (shown ? '"' + text + '"' : text);
    }

    /// All questions about rows, except those of typing ahead (see `typings`).
    std::size_t questions() const { return cellQuestions + styleQuestions + filterQuestions; }

    /// What the user typed on the table, and the row at which the search for it began.
    struct Typing {
        std::string text;
        std::size_t first = 0;

        bool operator==(const Typing&) const = default;
    };

    std::vector<Row> rows;
    /// Whether adjacent rows with the same group belong together.
    bool showsGroups = false;
    std::size_t countQuestions = 0;
    std::size_t cellQuestions = 0;
    std::size_t styleQuestions = 0;
    std::size_t filterQuestions = 0;
    std::size_t selectionChanges = 0;
    std::size_t selectedRowChanges = 0;
    std::size_t warningQuestions = 0;
    /// What `wholeWarning` adds to the warning in the style.
    std::string moreWarning;
    std::string_view notesTitle;
    /// The column that has room for a text, and the text.
    std::string_view leastColumn;
    std::string_view leastColumnText;
    /// A filter that is in effect while the user has typed nothing: the row's first name.
    std::string filteredName;
    std::vector<Edit> edits;
    std::vector<std::vector<std::size_t>> editedRows;
    std::vector<std::string> calls;
    std::vector<Typing> typings;
    std::function<void()> onRowsEdited = [] {};

private:
    class TextFilter final : public RowFilter {
    public:
        TextFilter(CountedRows& rows, std::string_view typed) : rows_(rows), typed_(typed) {}

        bool matches(std::size_t row) override
        {
            ++rows_.filterQuestions;
            const auto& texts = rows_.rows[row].texts;
            return std::any_of(texts.begin(), texts.end(), [this](const auto& text) {
                return text.second.find(typed_) != std::string::npos;
            });
        }
        bool narrows(std::string_view earlier) const override
        {
            return typed_.find(earlier) != std::string::npos;
        }

    private:
        CountedRows& rows_;
        std::string typed_;
    };
};

}  // namespace dunmora::test
