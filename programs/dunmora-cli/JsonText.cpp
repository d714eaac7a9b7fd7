#include "programs/dunmora-cli/JsonText.h"

#include "text/Utf8.h"

#include <cstddef>

namespace dunmora {

namespace {

// A lambda, not a function, so that the loop over every byte of every name is inlined.
constexpr auto kIsPlain = [](char c) { return c >= ' ' && c <= '~' && c != '"' && c != '\\'; };

void appendUnit(std::string& out, char32_t unit)
{
    constexpr std::string_view kDigits = "0123456789abcdef";
    out += "\\u";
    for (const unsigned shift : {12U, 8U, 4U, 0U}) {
        out += kDigits[unit >> shift & 0xFU];
    }
}

/// `\u` and the character in UTF-16, a pair of surrogates beyond U+FFFF.
void appendEscaped(std::string& out, char32_t c)
{
    if (c <= 0xFFFF) {
        appendUnit(out, c);
        return;
    }
    appendUnit(out, 0xD800U + ((c - 0x10000U) >> 10U));
    appendUnit(out, 0xDC00U + ((c - 0x10000U) & 0x3FFU));
}

void appendControl(std::string& out, char32_t c)
{
    switch (c) {
    case '"':
        out += "\\\"";
        break;
    case '\\':
        out += "\\\\";
        break;
    case '\b':
        out += "\\b";
        break;
    case '\f':
        out += "\\f";
        break;
    case '\n':
        out += "\\n";
        break;
    case '\r':
        out += "\\r";
        break;
    case '\t':
        out += "\\t";
        break;
    default:
        appendEscaped(out, c);
    }
}

}  // namespace

void appendJsonText(std::string& out, std::string_view text, JsonCharacters characters)
{
    out += '"';
    for (std::size_t position = 0; position < text.size();) {
        position = appendPlain(out, text, position, kIsPlain);
        if (position == text.size()) {
            break;
        }
        const auto character = utf8CharacterAt(text, position);
        if (character.codePoint < 0x7F) {
            appendControl(out, character.codePoint);
        } else if (characters == JsonCharacters::Ascii) {
            appendEscaped(out, character.codePoint);
        } else if (character.codePoint == kReplacementCharacter) {
            out += kReplacementText;
        } else {
            out += text.substr(position, character.size);
        }
        position += character.size;
    }
    out += '"';
}

}  // namespace dunmora
