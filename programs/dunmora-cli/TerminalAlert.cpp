#include "programs/dunmora-cli/TerminalAlert.h"

#include "text/Ascii.h"
#include "text/DisplayText.h"

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
        appendDisplayText(lines, line);
        lines += '\n';
    }
    return lines;
}

/// The answer without the blanks around it, its ASCII letters in lower case.
std::string plain(std::string_view answer)
{
    if (answer.ends_with('\r')) {
        answer.remove_suffix(1);
    }
    std::string text(trimmed(answer));
    std::transform(text.begin(), text.end(), text.begin(), toLowerAscii);
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
    err_ << displayText(content.defaultButton) << '/' << displayText(*content.alternateButton)
         << " [y/N] " << std::flush;
    return readsYes() ? kDefaultButton : kAlternateButton;
}

bool TerminalAlert::readsYes()
{
    std::string answer;
    std::getline(in_, answer);
    // An answer without a line end does not count: the user may not have finished typing it.
    if (!in_.good()) {
        err_ << '\n' << std::flush;
        return false;
    }
    return std::find(kYes.begin(), kYes.end(), plain(answer)) != kYes.end();
}

}  // namespace dunmora
