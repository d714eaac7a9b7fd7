#include "programs/dunmora-cli/BooksCommand.h"

#include "programs/dunmora-cli/CliEnvironment.h"
#include "programs/dunmora-cli/CommandLine.h"
#include "programs/dunmora-cli/FieldLines.h"
#include "programs/dunmora-cli/Report.h"
#include "programs/dunmora-cli/ResultTexts.h"
#include "programs/dunmora-cli/TableLayout.h"
#include "programs/dunmora-cli/TableStyle.h"
#include "programs/dunmora-cli/TerminalText.h"
#include "text/DisplayText.h"

#include <array>
#include <cstddef>
#include <string>
#include <tuple>
#include <vector>

namespace dunmora {

namespace {

using Line = std::array<std::string, 5>;

/// Each value on a line of its own, where the table is too wide.
std::string asStack(const std::vector<Line>& lines, std::size_t width)
{
    std::string out;
    for (std::size_t i = 1; i < lines.size(); ++i) {
        FieldLines fields(width, "");
        for (std::size_t j = 1; j < lines[i].size(); ++j) {
            fields.add(lines[0][j], lines[i][j], FieldLines::Break::WhereNeeded);
        }
        fields.add(lines[0][0], lines[i][0], FieldLines::Break::Never);
        out += out.empty() ? "" : "\n";
        fields.append(out, "");
    }
    return out;
}

std::string asTable(const std::vector<DesktopBook>& books, const TableStyle& style)
{
    constexpr auto kUnknown = "?";
    std::vector<Line> lines{{"UID", "Name", "Kind", "Writable", "People"}};
    for (const auto& book : books) {
        const auto* const writable = !book.isWritable ? kUnknown : *book.isWritable ? "yes" : "no";
        lines.push_back({displayText(book.uid), displayText(book.name), displayText(book.kind),
                         writable, book.people ? std::to_string(*book.people) : kUnknown});
    }
    TableLayout layout(std::tuple_size_v<Line>);
    for (const auto& line : lines) {
        for (std::size_t i = 0; i < line.size(); ++i) {
            layout.measure(i, line[i]);
        }
    }
    std::string out;
    for (const auto& line : lines) {
        std::string text;
        for (std::size_t i = 0; i < line.size(); ++i) {
            layout.appendCell(text, i, line[i]);
        }
        TableLayout::endLine(text);
        // The line's end takes no column.
        if (style.width && displayWidth(text) > *style.width + 1) {
            return asStack(lines, *style.width);
        }
        out += text;
    }
    return out;
}

std::string asJson(const std::vector<DesktopBook>& books, JsonCharacters characters)
{
    std::string out = R"({"schema":1,"books":[)";
    const auto appendText = [&](const char* key, const std::string& text) {
        out += key;
        appendJsonText(out, text, characters);
    };
    bool first = true;
    for (const auto& book : books) {
        out += first ? "" : ",";
        first = false;
        appendText(R"({"uid":)", book.uid);
        appendText(R"(,"name":)", book.name);
        appendText(R"(,"kind":)", book.kind);
        out += R"(,"writable":)";
        out += !book.isWritable ? "null" : *book.isWritable ? "true" : "false";
        out += R"(,"people":)" + (book.people ? std::to_string(*book.people) : "null");
        if (book.failure.empty()) {
            out += R"(,"failure":null)";
        } else {
            appendText(R"(,"failure":)", book.failure);
        }
        out += '}';
    }
    return out + "]}\n";
}

}  // namespace

ExitCode listBooks(const BooksRequest& request, const CliEnvironment& environment)
{
    const auto books =
        request.namesOnly ? environment.listDesktopBookNames() : environment.listDesktopBooks();
    printAs(environment, request.format,
            {.table = [&] { return asTable(books, outputStyle(environment, request.width, {})); },
             .json = [&](JsonCharacters characters) { return asJson(books, characters); }});
    for (const auto& book : books) {
        if (!request.quiet && !book.failure.empty()) {
            report(environment,
                   "note: " + quotedText(book.name) + " could not be read: " + book.failure);
        }
    }
    return ExitCode::Done;
}

}  // namespace dunmora
