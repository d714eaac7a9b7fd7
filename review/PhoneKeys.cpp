#include "review/PhoneKeys.h"

#include "text/Ascii.h"
#include "text/DisplayText.h"
#include "text/Utf8.h"
#include "text/WhiteSpace.h"

#include <array>
#include <cstddef>
#include <optional>
#include <utility>

namespace dunmora {

namespace {

/// Fewer digits are not enough to tell a number from others in other places.
constexpr std::size_t kFewestSharedDigits = 7;

/// No number has more (E.164: 15, and a prefix); a text of a million digits must not have a million
/// endings.
constexpr std::size_t kMostDigits = 24;

constexpr bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// Whether the character only makes a number easier to read, and is one of the usual ones.
constexpr bool isUsualPunctuation(char c)
{
    return c == ' ' || c == '(' || c == ')' || c == '-' || c == '.' || c == '/';
}

/// Whether another character only makes a number easier to read.
bool isUnusualPunctuation(char32_t c)
{
    const auto isHyphen = (c >= 0x2010 && c <= 0x2015) || c == 0x2212;
    if (isHyphen || isWhiteSpace(c)) {
        return true;
    }
    const auto effect = displayEffect(c);
    return effect == DisplayEffect::DirectionalMark ||
           effect == DisplayEffect::DirectionalFormatting || effect == DisplayEffect::Hidden;
}

struct Number {
    bool hasPlus = false;
    std::string digits;
    std::string extension;
};

/// Removes the beginning, in any case. Returns whether it was there.
bool removeStart(std::string_view& text, std::string_view start)
{
    if (!equalsIgnoringCase(text.substr(0, start.size()), start)) {
        return false;
    }
    text.remove_prefix(start.size());
    return true;
}

/// Splits an extension off the end: ";ext=12" (RFC 3966 §5.3), "ext. 12" or "x12".
std::string splitExtension(std::string_view& number)
{
    constexpr std::array<std::string_view, 4> kStarts = {";ext=", "ext.", "ext", "x"};
    auto digits = number.size();
    while (digits > 0 && isDigit(number[digits - 1])) {
        --digits;
    }
    const auto before = trimmed(number.substr(0, digits));
    for (const auto start : kStarts) {
        if (digits < number.size() && before.size() > start.size() &&
            equalsIgnoringCase(before.substr(before.size() - start.size()), start)) {
            auto extension = std::string(number.substr(digits));
            number = before.substr(0, before.size() - start.size());
            return extension;
        }
    }
    return {};
}

/// Nullopt for a text that is not only a number.
std::optional<Number> parsed(std::string_view text)
{
    Number number;
    removeStart(text, "tel:");
    number.extension = splitExtension(text);
    for (std::size_t position = 0; position < text.size();) {
        if (isDigit(text[position])) {
            number.digits += text[position++];
            continue;
        }
        if (isUsualPunctuation(text[position])) {
            ++position;
            continue;
        }
        const auto character = utf8CharacterAt(text, position);
        if (character.codePoint == U'+' && number.digits.empty() && !number.hasPlus) {
            number.hasPlus = true;
        } else if (!character.isValid || !isUnusualPunctuation(character.codePoint)) {
            return std::nullopt;
        }
        position += character.size;
    }
    return !number.digits.empty() && number.digits.size() <= kMostDigits
               ? std::optional<Number>(std::move(number))
               : std::nullopt;
}

}  // namespace

PhoneKeys phoneKeys(std::string_view number)
{
    const auto parsedNumber = parsed(number);
    PhoneKeys keys;
    if (!parsedNumber) {
        keys.texts.push_back("t" + withFoldedWhiteSpace(number));
        return keys;
    }

    const auto& digits = parsedNumber->digits;
    const auto end = parsedNumber->extension.empty() ? "" : "x" + parsedNumber->extension;
    keys.texts.reserve(2);
    keys.texts.push_back("d" + digits + end);
    if (!parsedNumber->hasPlus && !digits.starts_with("00")) {
        const std::size_t first = digits.starts_with('0') ? 1 : 0;
        if (digits.size() >= first + kFewestSharedDigits) {
            keys.longestEnding = digits.substr(first) + end;
            keys.endings = 1;
        }
        return keys;
    }
    keys.kind = PhoneKeys::Kind::International;
    const auto international = parsedNumber->hasPlus ? digits : digits.substr(2);
    keys.longestEnding = international + end;
    keys.texts.push_back("+" + keys.longestEnding);
    if (international.size() >= kFewestSharedDigits) {
        keys.endings = international.size() - kFewestSharedDigits + 1;
    }
    return keys;
}

}  // namespace dunmora
