#include "programs/dunmora-cli/ShellText.h"

#include "text/DisplayText.h"

#include <algorithm>

namespace dunmora {

namespace {

bool isHarmless(char c)
{
    constexpr std::string_view kOthers = "_./:@%+=,-";
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
           kOthers.find(c) != std::string_view::npos;
}

}  // namespace

std::string quotedForShell(std::string_view text, const Charset& charset)
{
    if (!text.empty() && std::all_of(text.begin(), text.end(), isHarmless)) {
        return std::string(text);
    }
    std::string word;
    if (displayText(text) == text && charset.encoded(text) == text) {
        for (const char c : text) {
            word += c == '\'' ? std::string("'\\''") : std::string(1, c);
        }
        return "'" + word + "'";
    }
    constexpr std::string_view kDigits = "0123456789abcdef";
    constexpr unsigned kMask = 15;
    for (const char c : text) {
        if (isHarmless(c) || c == ' ') {
            word += c;
            continue;
        }
        const auto byte = static_cast<unsigned char>(c);
        word += "\\x";
        word += kDigits[byte >> 4U];
        word += kDigits[byte & kMask];
    }
    return "$'" + word + "'";
}

}  // namespace dunmora
