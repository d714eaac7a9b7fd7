#pragma once

#include <string>

namespace dunmora {

/// What to tell the user of the exception that is being handled: the words of a `PlatformError`,
/// which are for users, or a sentence of ours around those of another one.
/// Thread: any, within a `catch`.
std::string failureText();

}  // namespace dunmora
