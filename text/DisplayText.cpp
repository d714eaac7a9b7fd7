#include "text/DisplayText.h"

#include "text/Utf8.h"

#include <algorithm>
#include <cstddef>

namespace dunmora {

namespace {

// A lambda, not a function, so that the loops over every byte of every name are inlined.
constexpr auto kIsPlain = [](char c) { return c >= ' ' && c <= '~'; };

/// Appends the picture of a C0 control or of DEL: U+2400 to U+241F, U+2421.
void appendPicture(std::string& out, char32_t control)
{
    const auto last = control == 0x7F ? 0x21U : static_cast<unsigned>(control);
    out += "\xE2\x90";
    out += static_cast<char>(0x80U | last);
}

/// Appends the text. `appendReplacement(character, effect, rest)` appends what replaces a character
/// that has an effect or is not UTF-8, and with which the rest of the text begins.
template <typename AppendReplacement>
void appendReplaced(std::string& out, std::string_view text,
                    const AppendReplacement& appendReplacement)
{
    std::size_t position = 0;
    while (position < text.size()) {
        position = appendPlain(out, text, position, kIsPlain);
        if (position == text.size()) {
            return;
        }
        const auto rest = text.substr(position);
        const auto character = utf8CharacterAt(text, position);
        const auto effect = displayEffect(character.codePoint);
        if (character.isValid && effect == DisplayEffect::None) {
            out += rest.substr(0, character.size);
        } else {
            appendReplacement(character, effect, rest);
        }
        position += character.size;
    }
}

}  // namespace

DisplayEffect displayEffect(char32_t c)
{
    if ((c >= 0x0A && c <= 0x0D) || c == 0x85 || c == 0x2028 || c == 0x2029) {
        return DisplayEffect::LineBreak;
    }
    if (c == 0x09) {
        return DisplayEffect::Tab;
    }
    if (c < 0x20 || (c >= 0x7F && c <= 0x9F)) {
        return DisplayEffect::Control;
    }
    if (c == 0x200E || c == 0x200F || c == 0x061C) {
        return DisplayEffect::DirectionalMark;
    }
    if ((c >= 0x202A && c <= 0x202E) || (c >= 0x2066 && c <= 0x2069)) {
        return DisplayEffect::DirectionalFormatting;
    }
    return DisplayEffect::None;
}

bool isPlainAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), kIsPlain);
}

void appendDisplayText(std::string& out, std::string_view text)
{
    appendReplaced(
        out, text,
        [&](const Utf8Character& character, DisplayEffect /*effect*/, std::string_view /*rest*/) {
            if (character.codePoint < 0x80) {
                appendPicture(out, character.codePoint);
            } else {
                out += kReplacementText;
            }
        });
}

std::string displayText(std::string_view text)
{
    std::string out;
    appendDisplayText(out, text);
    return out;
}

void appendWindowText(std::string& out, std::string_view text)
{
    appendReplaced(
        out, text,
        [&](const Utf8Character& character, DisplayEffect effect, std::string_view rest) {
            switch (effect) {
            case DisplayEffect::LineBreak:
            case DisplayEffect::Tab:
                // The line feed of a pair adds the space.
                out += rest.starts_with("\r\n") ? "" : " ";
                break;
            case DisplayEffect::DirectionalMark:
                out += rest.substr(0, character.size);
                break;
            case DisplayEffect::DirectionalFormatting:
                break;
            case DisplayEffect::Control:
            case DisplayEffect::None:
                out += kReplacementText;
                break;
            }
        });
}

std::string windowText(std::string_view text)
{
    std::string out;
    appendWindowText(out, text);
    return out;
}

std::string quotedText(std::string_view text)
{
    std::string out = "“";
    appendDisplayText(out, text);
    return out += "”";
}

std::string quotedPath(const std::filesystem::path& path)
{
    return quotedText(std::string_view(path.native()));
}

}  // namespace dunmora
