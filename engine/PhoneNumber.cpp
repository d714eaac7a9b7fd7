#include "engine/PhoneNumber.h"

#include "text/Ascii.h"

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

bool contains(std::string_view label, std::string_view word)
{
    while (!label.empty()) {
        if (beginsWith(label, word)) {
            return true;
        }
        label.remove_prefix(1);
    }
    return word.empty();
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
