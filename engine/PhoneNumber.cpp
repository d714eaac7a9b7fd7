#include "engine/PhoneNumber.h"

#include <cstddef>

namespace dunmora {

namespace {

// U+212A KELVIN SIGN in UTF-8: the one character outside ASCII whose lower case is an ASCII letter
// of our words (the k of "work"). No other part of Unicode's lower-casing can change a match.
constexpr std::string_view kKelvinSign = "\xE2\x84\xAA";

/// The lower-case ASCII letter at `position` and how many bytes it takes there; other bytes stay.
struct Letter {
    char lower;
    std::size_t size;
};

Letter letterAt(std::string_view text, std::size_t position)
{
    const char c = text[position];
    if (c >= 'A' && c <= 'Z') {
        return {static_cast<char>(c - 'A' + 'a'), 1};
    }
    if (text.substr(position, kKelvinSign.size()) == kKelvinSign) {
        return {'k', kKelvinSign.size()};
    }
    return {c, 1};
}

bool beginsWith(std::string_view text, std::size_t position, std::string_view word)
{
    for (const char c : word) {
        if (position >= text.size()) {
            return false;
        }
        const auto letter = letterAt(text, position);
        if (letter.lower != c) {
            return false;
        }
        position += letter.size;
    }
    return true;
}

bool contains(std::string_view label, std::string_view word)
{
    for (std::size_t position = 0; position < label.size(); ++position) {
        if (beginsWith(label, position, word)) {
            return true;
        }
    }
    return word.empty();
}

}  // namespace

std::string_view PhoneNumber(const std::optional<PhoneList>& phones, std::string_view word)
{
    for (const auto& phone : phones.value_or(PhoneList())) {
        // The platform reports a missing label as "found at position 0"; people rely on such
        // numbers being shown.
        if (!phone.label || contains(*phone.label, word)) {
            return phone.value;
        }
    }
    return "";
}

}  // namespace dunmora
