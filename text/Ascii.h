#pragma once

#include <algorithm>
#include <string_view>

namespace dunmora {

// Case and white space of ASCII text, whatever the locale. Bytes beyond ASCII are left alone.
// Thread: any. Errors: none.

/// Blanks and everything that ends a line or a page.
constexpr std::string_view kWhiteSpace = " \t\r\n\v\f";

constexpr char toUpperAscii(char c)
{
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

constexpr char toLowerAscii(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Whether the texts are equal when the case of ASCII letters is ignored.
inline bool equalsIgnoringCase(std::string_view a, std::string_view b)
{
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return toUpperAscii(x) == toUpperAscii(y);
           });
}

constexpr bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}

/// The text without blanks (spaces and tabs) at both ends.
constexpr std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && isBlank(text.front())) {
        text.remove_prefix(1);
    }
    while (!text.empty() && isBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

}  // namespace dunmora
