#include "tests/oracle/CardSplitter.h"

#include <cctype>
#include <regex>

namespace dunmora::test {

namespace {

std::string trimmedUpper(std::string_view line)
{
    std::string text;
    for (const auto c : line) {
        text += static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    }
    const auto first = text.find_first_not_of(" \t\r\n");
    const auto last = text.find_last_not_of(" \t\r\n");
    return first == std::string::npos ? "" : text.substr(first, last - first + 1);
}

/// Splits the text into lines, each with its line end: CR LF, LF or CR.
std::vector<std::string_view> linesOf(std::string_view text)
{
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        auto end = text.find_first_of("\r\n");
        if (end == std::string_view::npos) {
            end = text.size();
        } else {
            end += text.substr(end).starts_with("\r\n") ? 2 : 1;
        }
        lines.push_back(text.substr(0, end));
        text.remove_prefix(end);
    }
    return lines;
}

bool beginsWithBlank(std::string_view line)
{
    return line.starts_with(' ') || line.starts_with('\t');
}

}  // namespace

std::vector<std::string> splitCards(std::string_view text)
{
    static const std::regex kAgentWithoutValue("([^:;]*\\.)?AGENT(;[^:]*)?:");
    static const std::regex kAgentWithCard("([^:;]*\\.)?AGENT(;[^:]*)?:[ \t]*BEGIN:VCARD");

    if (text.starts_with("\xEF\xBB\xBF")) {
        text.remove_prefix(3);
    }
    std::vector<std::string> cards;
    std::string card;
    std::string lastLine;
    int depth = 0;
    bool isNew = false;  // 3.0 or 4.0, where an indented line is never BEGIN or END
    for (const auto line : linesOf(text)) {
        const auto word = trimmedUpper(line);
        const auto continues = depth > 0 && isNew && beginsWithBlank(line);
        if (!continues && word == "BEGIN:VCARD") {
            if (depth > 0 && std::regex_match(lastLine, kAgentWithoutValue)) {
                ++depth;
            } else {
                card.clear();
                isNew = false;
                depth = 1;
            }
        }
        if (depth == 0) {
            continue;
        }
        card += line;
        // In 3.0 the inner card is the value of one folded line.
        if (!isNew && std::regex_match(word, kAgentWithCard)) {
            ++depth;
        }
        if (depth == 1 && word.starts_with("VERSION:")) {
            isNew = !word.ends_with("2.1");
        }
        if (!continues && word == "END:VCARD") {
            --depth;
            if (depth == 0) {
                cards.push_back(card);
            }
        }
        if (!word.empty()) {
            lastLine = word;
        }
    }
    return cards;
}

}  // namespace dunmora::test
