#pragma once

#include <cstddef>
#include <string>

namespace dunmora::bench {

/// An address book for benchmarks.
struct BigBook {
    std::size_t cards = 100'000;
    /// How many people in a hundred have a second card with the same name.
    std::size_t percentWithCopy = 10;
    /// Whether the second card has another mobile number and a note; otherwise only the UID
    /// differs.
    bool copiesDiffer = false;
};

/// The book as one vCard 3.0 file, as an Apple phone writes it: CRLF, about 360 bytes per card, the
/// copies after everyone's first card. It is the same on every system.
std::string bigBook(const BigBook& book);

}  // namespace dunmora::bench
