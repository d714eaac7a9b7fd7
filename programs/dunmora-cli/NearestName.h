#pragma once

#include <span>
#include <string>
#include <string_view>

namespace dunmora {

/// The name that the user probably meant: the nearest one by the letters to be changed, added, left
/// out or swapped with their neighbour, when few are. Dashes in front and the case of letters do
/// not count. Empty when none is near.
/// Thread: any. Errors: none.
std::string_view nearestName(std::string_view typed, std::span<const std::string> names);

}  // namespace dunmora
