#pragma once

#include <cstddef>
#include <string_view>

namespace dunmora {

/// The number of terminal columns of a text that is safe to display: East Asian wide characters
/// take two, combining characters none.
std::size_t displayWidth(std::string_view text);

}  // namespace dunmora
