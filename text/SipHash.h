#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace dunmora {

/// The key of a SipHash, its 16 bytes read as two little-endian numbers.
struct SipKey {
    std::uint64_t first = 0;
    std::uint64_t second = 0;
};

namespace sip {

struct State {
    std::uint64_t v0;
    std::uint64_t v1;
    std::uint64_t v2;
    std::uint64_t v3;

    void rounds(int count)
    {
        for (int i = 0; i < count; ++i) {
            v0 += v1;
            v1 = std::rotl(v1, 13) ^ v0;
            v0 = std::rotl(v0, 32);
            v2 += v3;
            v3 = std::rotl(v3, 16) ^ v2;
            v0 += v3;
            v3 = std::rotl(v3, 21) ^ v0;
            v2 += v1;
            v1 = std::rotl(v1, 17) ^ v2;
            v2 = std::rotl(v2, 32);
        }
    }
};

/// The eight bytes from `bytes` on as a little-endian number.
inline std::uint64_t number(const char* bytes)
{
    const auto byte = [&](std::size_t i) {
        return std::uint64_t{static_cast<unsigned char>(bytes[i])} << (8 * i);
    };
    // Written out, compilers make it one read.
    return byte(0) | byte(1) | byte(2) | byte(3) | byte(4) | byte(5) | byte(6) | byte(7);
}

/// The last bytes of the text, those beyond a multiple of eight, as a little-endian number.
inline std::uint64_t lastNumber(std::string_view text)
{
    const auto count = text.size() % 8;
    if (count == 0) {
        return 0;
    }
    if (text.size() > 8) {
        return number(text.data() + text.size() - 8) >> (8 * (8 - count));
    }
    std::uint64_t result = 0;
    for (std::size_t i = 0; i < count; ++i) {
        result |= std::uint64_t{static_cast<unsigned char>(text[i])} << (8 * i);
    }
    return result;
}

}  // namespace sip

/// SipHash-`kRounds`-`kLastRounds` of the text (Aumasson and Bernstein, "SipHash: a fast
/// short-input PRF"). Without the key nobody can find texts with equal hashes, or with hashes that
/// are equal in some bits.
/// Thread: any. Errors: none.
template <int kRounds, int kLastRounds>
std::uint64_t sipHash(const SipKey& key, std::string_view text)
{
    sip::State state{key.first ^ 0x736f6d6570736575U, key.second ^ 0x646f72616e646f6dU,
                     key.first ^ 0x6c7967656e657261U, key.second ^ 0x7465646279746573U};
    const auto add = [&](std::uint64_t word) {
        state.v3 ^= word;
        state.rounds(kRounds);
        state.v0 ^= word;
    };
    for (std::size_t i = 0; i + 8 <= text.size(); i += 8) {
        add(sip::number(text.data() + i));
    }
    add(sip::lastNumber(text) | std::uint64_t{text.size()} << 56U);
    state.v2 ^= 0xFFU;
    state.rounds(kLastRounds);
    return state.v0 ^ state.v1 ^ state.v2 ^ state.v3;
}

}  // namespace dunmora
