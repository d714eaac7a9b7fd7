#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace dunmora {

/// The card's text without the values of its UID and its REV, in pieces. Cards with equal parts
/// have the same properties in the same order, but for those two, and a name that shows something.
/// Nothing for a card of which this is not certain, such as one with another card inside.
///
/// `card` is a card that `CardReader` finds, with or without its last line end.
/// Thread: any. Errors: none.
std::optional<std::array<std::string_view, 3>> storedParts(std::string_view card);

}  // namespace dunmora
