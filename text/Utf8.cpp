#include "text/Utf8.h"

#include <cstdint>
#include <cstring>

namespace dunmora {

namespace {

unsigned byteAt(std::string_view text, std::size_t position)
{
    return static_cast<unsigned char>(text[position]);
}

/// What a lead byte determines: the size of the character, its first bits, and the range of the
/// second byte that excludes overlong forms, surrogates and code points above U+10FFFF.
struct Lead {
    std::size_t size;
    char32_t bits;
    unsigned low;
    unsigned high;
};

Lead leadOf(unsigned byte)
{
    if (byte >= 0xC2 && byte <= 0xDF) {
        return {2, byte & 0x1FU, 0x80, 0xBF};
    }
    if (byte >= 0xE0 && byte <= 0xEF) {
        return {3, byte & 0x0FU, byte == 0xE0 ? 0xA0U : 0x80U, byte == 0xED ? 0x9FU : 0xBFU};
    }
    if (byte >= 0xF0 && byte <= 0xF4) {
        return {4, byte & 0x07U, byte == 0xF0 ? 0x90U : 0x80U, byte == 0xF4 ? 0x8FU : 0xBFU};
    }
    return {1, kReplacementCharacter, 0, 0};
}

}  // namespace

Utf8Character utf8CharacterAt(std::string_view text, std::size_t position)
{
    const auto first = byteAt(text, position);
    if (first < 0x80) {
        return {first, 1};
    }
    auto lead = leadOf(first);
    for (std::size_t i = 1; i < lead.size; ++i) {
        if (position + i >= text.size()) {
            return {kReplacementCharacter, i, false};
        }
        const auto byte = byteAt(text, position + i);
        if (byte < lead.low || byte > lead.high) {
            return {kReplacementCharacter, i, false};
        }
        lead.bits = lead.bits << 6U | (byte & 0x3FU);
        lead.low = 0x80;
        lead.high = 0xBF;
    }
    return {lead.bits, lead.size, lead.size > 1};
}

bool isUtf8(std::string_view bytes)
{
    // Nearly all text is ASCII: eight bytes at a time.
    constexpr std::uint64_t kHighBits = 0x8080808080808080U;
    for (std::size_t i = 0; i < bytes.size();) {
        std::uint64_t word = 0;
        if (bytes.size() - i >= sizeof word) {
            std::memcpy(&word, bytes.data() + i, sizeof word);
            if ((word & kHighBits) == 0) {
                i += sizeof word;
                continue;
            }
        }
        if (byteAt(bytes, i) < 0x80) {
            ++i;
            continue;
        }
        const auto character = utf8CharacterAt(bytes, i);
        if (!character.isValid) {
            return false;
        }
        i += character.size;
    }
    return true;
}

void appendUtf8(std::string& text, char32_t codePoint)
{
    const auto put = [&](char32_t bits) { text += static_cast<char>(bits); };
    if (codePoint < 0x80) {
        put(codePoint);
    } else if (codePoint < 0x800) {
        put(0xC0U | codePoint >> 6U);
        put(0x80U | (codePoint & 0x3FU));
    } else if (codePoint < 0x10000) {
        put(0xE0U | codePoint >> 12U);
        put(0x80U | (codePoint >> 6U & 0x3FU));
        put(0x80U | (codePoint & 0x3FU));
    } else {
        put(0xF0U | codePoint >> 18U);
        put(0x80U | (codePoint >> 12U & 0x3FU));
        put(0x80U | (codePoint >> 6U & 0x3FU));
        put(0x80U | (codePoint & 0x3FU));
    }
}

}  // namespace dunmora
