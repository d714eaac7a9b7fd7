#pragma once

#include <string>
#include <string_view>

namespace dunmora {

/// A text that is equal for cards that hold the same. The uid does not count, and neither does what
/// an address book service or a server changes by itself: the modification date, the order of the
/// properties, how the lines are folded, and properties about the storage of the card.
/// Thread: any. Errors: none.
std::string comparableCard(std::string_view card);

}  // namespace dunmora
