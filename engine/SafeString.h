#pragma once

#include <optional>
#include <string_view>

namespace dunmora {

/// The text, or the empty text when it is missing.
std::string_view SafeString(std::optional<std::string_view> text);

}  // namespace dunmora
