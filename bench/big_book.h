#pragma once

#include <cstddef>
#include <string>

namespace dunmora::bench {

/// An address book to measure with.
struct BigBook {
    std::size_t cards = 100'000;
    /// How many people in a hundred have a second card with the same name.
    std::size_t percentWithCopy = 10;
};

/// The book as one vCard 3.0 file, as a telephone of Apple's would write it: CRLF, about 360 bytes
/// a card, the copies after everyone's first card. The same on every machine.
std::string bigBook(const BigBook& book);

}  // namespace dunmora::bench
