#pragma once

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace dunmora {

/// ASCII text as vCards use it for names and keywords, whatever the locale.

inline char toUpperAscii(char c)
{
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

/// Whether the texts are the same but for the case of ASCII letters.
inline bool equalsIgnoringCase(std::string_view a, std::string_view b)
{
    return a.size() == b.size() && std::equal(a.begin(), a.end(), b.begin(), [](char x, char y) {
               return toUpperAscii(x) == toUpperAscii(y);
           });
}

inline bool isBlank(char c)
{
    return c == ' ' || c == '\t';
}

/// The text without the blanks at both ends.
inline std::string_view trimmed(std::string_view text)
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
