#include "app/Utf8.h"

namespace dunmora {

namespace {

unsigned byteAt(std::string_view text, std::size_t position)
{
    return static_cast<unsigned char>(text[position]);
}

/// What a lead byte promises: how long the character is, the bits that it gives, and where the
/// second byte must lie so that nothing is encoded longer than needed, is a surrogate or lies
/// beyond U+10FFFF.
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

}  // namespace dunmora
