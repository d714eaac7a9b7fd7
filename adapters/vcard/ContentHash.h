#pragma once

#include "adapters/posix/Pieces.h"

#include <compare>
#include <cstddef>
#include <cstdint>

namespace dunmora {

/// Recognizes the content of a file without keeping it: its size and 128 bits of a hash.
struct ContentHash {
    std::size_t size = 0;
    std::uint64_t high = 0;
    std::uint64_t low = 0;

    // NOLINTNEXTLINE(modernize-use-nullptr): there is no pointer here
    auto operator<=>(const ContentHash&) const = default;
};

/// The hash of the joined pieces. Thread: any. Errors: std::bad_alloc.
ContentHash contentHash(const Pieces& content);

}  // namespace dunmora
