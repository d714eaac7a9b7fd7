#include "text/WhiteSpace.h"

#include "text/DisplayText.h"
#include "text/Utf8.h"

#include <cstddef>

namespace dunmora {

namespace {

/// Letters and symbols without ink, which texts use as white space.
bool isBlankLetter(char32_t c)
{
    return c == 0x115F || c == 0x1160 || c == 0x17B4 || c == 0x17B5 || c == 0x180E || c == 0x200C ||
           c == 0x200D || (c >= 0x2060 && c <= 0x2064) || c == 0x2800 || c == 0x3164 || c == 0xFFA0;
}

constexpr bool isVisibleAscii(char c)
{
    return c > ' ' && c <= '~';
}

bool isInvisible(char32_t c)
{
    switch (displayEffect(c)) {
    case DisplayEffect::Tab:
    case DisplayEffect::LineBreak:
    case DisplayEffect::DirectionalMark:
    case DisplayEffect::DirectionalFormatting:
    case DisplayEffect::Hidden:
        return true;
    case DisplayEffect::Control:
        return isWhiteSpace(c);
    case DisplayEffect::None:
        break;
    }
    return isWhiteSpace(c) || isBlankLetter(c);
}

}  // namespace

bool isWhiteSpace(char32_t c)
{
    return (c >= 0x09 && c <= 0x0D) || c == ' ' || c == 0x85 || c == 0xA0 || c == 0x1680 ||
           (c >= 0x2000 && c <= 0x200A) || c == 0x2028 || c == 0x2029 || c == 0x202F ||
           c == 0x205F || c == 0x3000;
}

bool showsNothing(std::string_view text)
{
    for (std::size_t position = 0; position < text.size();) {
        if (isVisibleAscii(text[position])) {
            return false;
        }
        const auto character = utf8CharacterAt(text, position);
        if (!character.isValid || !isInvisible(character.codePoint)) {
            return false;
        }
        position += character.size;
    }
    return true;
}

std::string withFoldedWhiteSpace(std::string_view text)
{
    std::string folded;
    folded.reserve(text.size());
    bool isAfterSpace = false;
    constexpr auto kIsVisible = [](char c) { return isVisibleAscii(c); };
    for (std::size_t position = 0; position < text.size();) {
        if (kIsVisible(text[position])) {
            folded += isAfterSpace && !folded.empty() ? " " : "";
            position = appendPlain(folded, text, position, kIsVisible);
            isAfterSpace = false;
            continue;
        }
        const auto character = utf8CharacterAt(text, position);
        if (isWhiteSpace(character.codePoint)) {
            isAfterSpace = true;
        } else {
            folded += isAfterSpace && !folded.empty() ? " " : "";
            folded += text.substr(position, character.size);
            isAfterSpace = false;
        }
        position += character.size;
    }
    return folded;
}

}  // namespace dunmora
