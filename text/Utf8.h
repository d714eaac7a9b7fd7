#pragma once

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

namespace dunmora {

/// Replaces bytes that are not UTF-8.
inline constexpr char32_t kReplacementCharacter = 0xFFFD;
inline constexpr std::string_view kReplacementText = "\xEF\xBF\xBD";

/// A character of a UTF-8 text and the number of bytes it takes there.
struct Utf8Character {
    char32_t codePoint;
    std::size_t size;
    /// False when the bytes are not UTF-8; `codePoint` is then U+FFFD.
    bool isValid = true;
};

/// Returns the character at the position, which must be inside the text. An invalid sequence gives
/// U+FFFD and the length of its longest valid prefix, at least 1 (Unicode 15, table 3-7).
Utf8Character utf8CharacterAt(std::string_view text, std::size_t position);

/// Whether the bytes are UTF-8 (RFC 3629) throughout: no overlong forms, no surrogates, nothing
/// above U+10FFFF.
bool isUtf8(std::string_view bytes);

/// Appends a code point, which is not above U+10FFFF and not a surrogate.
void appendUtf8(std::string& text, char32_t codePoint);

/// Appends the bytes from `position` on that `isPlain` accepts. Returns the offset of the first
/// byte that it does not, or the end of the text. A template, so that the loop over every byte of
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
