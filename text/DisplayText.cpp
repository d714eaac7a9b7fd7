#include "text/DisplayText.h"

#include "text/Utf8.h"

#include <algorithm>
#include <array>
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

/// The size of the flag that the text begins with, if its emoji contains tags; otherwise 0.
std::size_t sizeOfFlagWithTags(std::string_view text)
{
    constexpr std::array<std::string_view, 3> kFlags = {
        "\U0001F3F4\U000E0067\U000E0062\U000E0065\U000E006E\U000E0067\U000E007F",
        "\U0001F3F4\U000E0067\U000E0062\U000E0073\U000E0063\U000E0074\U000E007F",
        "\U0001F3F4\U000E0067\U000E0062\U000E0077\U000E006C\U000E0073\U000E007F",
    };
    for (const auto flag : kFlags) {
        if (text.starts_with(flag)) {
            return flag.size();
        }
    }
    return 0;
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
        auto size = character.size;
        if (character.isValid && effect == DisplayEffect::None) {
            size = std::max(size, sizeOfFlagWithTags(rest));
            out += rest.substr(0, size);
        } else {
            appendReplacement(character, effect, rest);
        }
        position += size;
    }
}

/// Appends the text as `appendWindowText` does, but with this in place of each line break.
void appendForWindow(std::string& out, std::string_view text, std::string_view lineBreak)
{
    appendReplaced(
        out, text,
        [&](const Utf8Character& character, DisplayEffect effect, std::string_view rest) {
            switch (effect) {
            case DisplayEffect::LineBreak:
                // The line feed of a pair adds it.
                out += rest.starts_with("\r\n") ? "" : lineBreak;
                break;
            case DisplayEffect::Tab:
                out += ' ';
                break;
            case DisplayEffect::DirectionalMark:
                out += rest.substr(0, character.size);
                break;
            case DisplayEffect::DirectionalFormatting:
            case DisplayEffect::Hidden:
                break;
            case DisplayEffect::Control:
            case DisplayEffect::None:
                out += kReplacementText;
                break;
            }
        });
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
    if (c == 0xAD || c == 0x034F || c == 0x200B || c == 0xFEFF || (c >= 0xFFF9 && c <= 0xFFFB) ||
        (c >= 0xE0000 && c <= 0xE007F)) {
        return DisplayEffect::Hidden;
    }
    return DisplayEffect::None;
}

bool isPlainAscii(std::string_view text)
{
    return std::all_of(text.begin(), text.end(), kIsPlain);
}

std::string_view shownPart(std::string_view text, std::size_t maxBytes)
{
    if (text.size() <= maxBytes) {
        return text;
    }
    constexpr auto kContinues = [](char byte) {
        return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
    };
    constexpr std::size_t kMaxContinuations = 3;
    auto length = maxBytes;
    for (std::size_t back = 0; back < kMaxContinuations && length > 0 && kContinues(text[length]);
         ++back) {
        --length;
    }
    return text.substr(0, length);
}

std::string shownText(std::string_view text, std::size_t maxBytes)
{
    const auto part = shownPart(text, maxBytes);
    auto shown = std::string(part);
    if (part.size() < text.size()) {
        shown += kEllipsis;
    }
    return shown;
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
    appendForWindow(out, text, " ");
}

std::string windowText(std::string_view text)
{
    std::string out;
    appendWindowText(out, text);
    return out;
}

std::string windowLines(std::string_view text)
{
    std::string out;
    appendForWindow(out, text, "\n");
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
