#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace dunmora {

/// What stands for bytes that are not UTF-8.
inline constexpr char32_t kReplacementCharacter = 0xFFFD;
inline constexpr std::string_view kReplacementText = "\xEF\xBF\xBD";

/// A character of a UTF-8 text and the number of bytes it takes there.
struct Utf8Character {
    char32_t codePoint;
    std::size_t size;
    /// False when U+FFFD stands for bytes that are not UTF-8.
    bool isValid = true;
};

/// The character at the position, which lies inside the text. Bytes that begin no character give
/// U+FFFD and the length of the longest part that could have begun one (Unicode 15, table 3-7).
Utf8Character utf8CharacterAt(std::string_view text, std::size_t position);

/// Appends the bytes from `position` on that `isPlain` lets pass, and returns where the first one
/// stands that it does not, or the text's end. A template, so that the loop over every byte of
/// every name is inlined.
template <typename IsPlain>
std::size_t appendPlain(std::string& out, std::string_view text, std::size_t position,
                        IsPlain isPlain)
{
    const auto rest = text.substr(position);
    const auto plain = static_cast<std::size_t>(
        std::find_if_not(rest.begin(), rest.end(), isPlain) - rest.begin());
    out += rest.substr(0, plain);
    return position + plain;
}

}  // namespace dunmora
