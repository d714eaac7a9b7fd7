#include "programs/dunmora-cli/TerminalAlert.h"

#include "programs/dunmora-cli/TerminalText.h"

#include <algorithm>
#include <array>
#include <istream>
#include <ostream>
#include <sstream>
#include <string>
#include <string_view>

namespace dunmora {

namespace {

constexpr std::array<std::string_view, 4> kYes{"y", "yes", "ok", "okay"};

/// The text with its line ends kept, as "\n", and every other control made visible.
std::string printableLines(const std::string& text)
{
    std::string lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) {
        if (line.ends_with('\r')) {
            line.pop_back();
        }
        appendPrintable(lines, line);
        lines += '\n';
    }
    return lines;
}

/// The answer without the blanks around it, its ASCII letters in lower case.
std::string plain(std::string_view answer)
{
    constexpr std::string_view kBlanks = " \t\r";
    const auto first = answer.find_first_not_of(kBlanks);
    if (first == std::string_view::npos) {
        return {};
    }
    std::string text(answer.substr(first, answer.find_last_not_of(kBlanks) - first + 1));
    std::transform(text.begin(), text.end(), text.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return text;
}

}  // namespace

int TerminalAlert::runModal(const AlertContent& content)
{
    err_ << printableLines(content.messageText) << printableLines(content.informativeText);
    if (!content.alternateButton) {
        err_ << std::flush;
        return kDefaultButton;
    }
    err_ << printable(content.defaultButton) << '/' << printable(*content.alternateButton)
         << " [y/N] " << std::flush;
    return readsYes() ? kDefaultButton : kAlternateButton;
}

bool TerminalAlert::readsYes()
{
    std::string answer;
    std::getline(in_, answer);
    // Without its line end an answer was not given: whoever typed it may not have been done.
    if (!in_.good()) {
        err_ << '\n' << std::flush;
        return false;
    }
    return std::find(kYes.begin(), kYes.end(), plain(answer)) != kYes.end();
}

}  // namespace dunmora
