#pragma once

#include <string>
#include <string_view>

namespace dunmora {

// White space of every script. Thread: any. Errors: none.

/// Whether the character is white space (the Unicode property White_Space).
bool isWhiteSpace(char32_t codePoint);

/// Whether a reader sees nothing: the text is empty, or it consists of white space and of
/// characters that show nothing, such as zero width spaces, directional marks and the blank
/// letters of Hangul and Braille.
bool showsNothing(std::string_view text);

/// The text without white space at both ends, and with one space instead of each white space
/// inside.
std::string withFoldedWhiteSpace(std::string_view text);

}  // namespace dunmora
