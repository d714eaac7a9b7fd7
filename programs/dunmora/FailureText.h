#pragma once

#include <string>

namespace dunmora {

/// Describes the exception being handled for the user: the text of a `PlatformError` as it is, or a
/// general message that contains the text of any other exception.
/// Thread: any; call it in a `catch` block.
std::string failureText();

}  // namespace dunmora
