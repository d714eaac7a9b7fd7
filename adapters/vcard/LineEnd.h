#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace dunmora {

/// Where a line ends, and whether its bytes can be used as they are.
struct LineEnd {
    /// The offset of the first CR or LF, or the end of the text.
    std::size_t offset;
    /// Neither a backslash nor a byte outside ASCII is before it.
    bool isPlain;
};

constexpr bool endsLine(char c)
{
    return c == '\n' || c == '\r';
}

/// Implements `findLineEnd` eight bytes at a time, for every processor.
inline LineEnd findLineEndByWords(std::string_view text, std::size_t from)
{
    constexpr std::uint64_t kOnes = 0x0101010101010101U;
    constexpr std::uint64_t kHighBits = kOnes << 7U;
    const auto has = [](std::uint64_t word, char c) {
        // A byte of `zeros` is zero where the word has the character; only then does subtracting 1
        // set the highest bit of a byte that did not have it (or that of a byte after such a one).
        const auto zeros = word ^ (kOnes * static_cast<unsigned char>(c));
        return ((zeros - kOnes) & ~zeros & kHighBits) != 0;
    };
    auto position = from;
    bool isPlain = true;
    for (std::uint64_t word = 0; text.size() - position >= sizeof word; position += sizeof word) {
        std::memcpy(&word, text.data() + position, sizeof word);
        if (has(word, '\n') || has(word, '\r')) {
            break;
        }
        isPlain = isPlain && (word & kHighBits) == 0 && !has(word, '\\');
    }
    for (; position < text.size() && !endsLine(text[position]); ++position) {
        isPlain =
            isPlain && text[position] != '\\' && static_cast<unsigned char>(text[position]) < 0x80;
    }
    return {position, isPlain};
}

#ifdef __SSE2__
/// Implements `findLineEnd` sixteen bytes at a time, for x86.
inline LineEnd findLineEndBySse2(std::string_view text, std::size_t from)
{
    using Bytes = __m128i;
    const auto maskOf = [](Bytes bytes) { return static_cast<unsigned>(_mm_movemask_epi8(bytes)); };
    const auto lineFeeds = _mm_set1_epi8('\n');
    const auto returns = _mm_set1_epi8('\r');
    const auto backslashes = _mm_set1_epi8('\\');
    auto position = from;
    bool isPlain = true;
    for (; text.size() - position >= sizeof(Bytes); position += sizeof(Bytes)) {
        Bytes bytes;
        std::memcpy(&bytes, text.data() + position, sizeof bytes);
        const auto ends =
            maskOf(_mm_or_si128(_mm_cmpeq_epi8(bytes, lineFeeds), _mm_cmpeq_epi8(bytes, returns)));
        // The mask consists of the highest bits, which a byte outside ASCII has set already.
        const auto unusual = maskOf(_mm_or_si128(bytes, _mm_cmpeq_epi8(bytes, backslashes)));
        if (ends != 0) {
            const auto isBeforeEnd = (ends - 1) & ~ends;
            return {position + static_cast<unsigned>(std::countr_zero(ends)),
                    isPlain && (unusual & isBeforeEnd) == 0};
        }
        isPlain = isPlain && unusual == 0;
    }
    const auto end = findLineEndByWords(text, position);
    return {end.offset, isPlain && end.isPlain};
}
#endif

/// Finds the first line end at or after `from`, which must not be beyond the end of the text. Reads
/// nothing outside the text.
/// Thread: any. Errors: none.
inline LineEnd findLineEnd(std::string_view text, std::size_t from)
{
#ifdef __SSE2__
    return findLineEndBySse2(text, from);
#else
    return findLineEndByWords(text, from);
#endif
}

}  // namespace dunmora
