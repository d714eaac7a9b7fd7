#include "engine/PhoneNumber.h"

#include "text/Ascii.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace dunmora {

namespace {

// U+212A KELVIN SIGN in UTF-8: the one character outside ASCII whose lower case is an ASCII letter
// of our words (the k of "work"). No other part of Unicode's lower-casing can change a match.
constexpr std::string_view kKelvinSign = "\xE2\x84\xAA";

bool beginsWith(std::string_view text, std::string_view word)
{
    for (const char c : word) {
        if (c == 'k' && text.starts_with(kKelvinSign)) {
            text.remove_prefix(kKelvinSign.size());
        } else if (!text.empty() && toLowerAscii(text.front()) == c) {
            text.remove_prefix(1);
        } else {
            return false;
        }
    }
    return true;
}

/// The characters at `text`, as many as the number has bytes, with the ASCII letters in lower case.
/// Other characters change as well, but none becomes a letter.
template <typename Number>
Number lettersAt(const char* text)
{
    // The bit that an upper-case letter lacks.
    constexpr auto kLowerCase = static_cast<Number>(0x2020202020202020);
    Number letters = 0;
    std::memcpy(&letters, text, sizeof(letters));
    return static_cast<Number>(letters | kLowerCase);
}

/// Whether one of the eight characters at `text` may be the letter, which is in lower case, or its
/// upper case.
bool mayHave(char letter, const char* text)
{
    constexpr std::uint64_t kOnes = 0x0101010101010101;
    const auto differences =
        lettersAt<std::uint64_t>(text) ^ (kOnes * static_cast<unsigned char>(letter));
    // A byte that is 0 borrows from its highest bit. A 1 next to it may do so as well.
    return ((differences - kOnes) & ~differences & (kOnes << 7)) != 0;
}

/// Whether the label contains the word, whose first two letters are not a k.
bool contains(std::string_view label, std::string_view word)
{
    // Most labels have several characters in front of the word, or do not contain it.
    while (label.size() >= 8 && !mayHave(word.front(), label.data())) {
        label.remove_prefix(8);
    }
    const auto beginning = lettersAt<std::uint16_t>(word.data());
    for (; label.size() >= word.size(); label.remove_prefix(1)) {
        if (lettersAt<std::uint16_t>(label.data()) == beginning &&
            beginsWith(label.substr(2), word.substr(2))) {
            return true;
        }
    }
    return false;
}

}  // namespace

std::string_view PhoneNumber(const OptionalPhones& phones, std::string_view word)
{
    for (const auto& phone : phones.value_or(PhoneList())) {
        // The platform reports a missing label as "found at position 0", and users rely on such
        // numbers being shown.
        if (!phone.label || contains(*phone.label, word)) {
            return phone.value;
        }
    }
    return "";
}

}  // namespace dunmora
