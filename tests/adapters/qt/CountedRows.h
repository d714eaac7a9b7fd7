#pragma once

#include "platform/TableView.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora::test {

/// Rows in memory that count the questions and keep the edits of a table.
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

    void rowsEdited(std::span<const std::size_t> edited) override
    {
        editedRows.emplace_back(edited.begin(), edited.end());
        calls.emplace_back("rowsEdited");
        onRowsEdited();
    }

    /// All questions about rows.
    std::size_t questions() const { return cellQuestions + styleQuestions; }

    std::vector<Row> rows;
    std::size_t countQuestions = 0;
    std::size_t cellQuestions = 0;
    std::size_t styleQuestions = 0;
    std::size_t selectionChanges = 0;
    std::vector<Edit> edits;
    std::vector<std::vector<std::size_t>> editedRows;
    std::vector<std::string> calls;
    std::function<void()> onRowsEdited = [] {};
};

}  // namespace dunmora::test
