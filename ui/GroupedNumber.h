#pragma once

#include <cstddef>
#include <string>

namespace dunmora {

/// Writes a number for a sentence in a window, as the user's locale does (`NumberFormat`).
/// Thread: any. Errors: none.
std::string groupedNumber(std::size_t number);

}  // namespace dunmora
