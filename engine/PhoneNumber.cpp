#include "engine/PhoneNumber.h"

#include "text/Ascii.h"

#include <cstddef>

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

/// Whether the label contains the word, which does not begin with a k.
bool contains(std::string_view label, std::string_view word)
{
    for (std::size_t i = 0; i < label.size(); ++i) {
        if (toLowerAscii(label[i]) == word.front() && beginsWith(label.substr(i), word)) {
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
