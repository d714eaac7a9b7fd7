#pragma once

#include <stdexcept>

namespace dunmora {

/// A failure of the machine underneath (a file, a bus, a framework), in words that a user can read.
/// Adapters throw it where a foreign error enters; nothing else does. The text is UTF-8, one line.
class PlatformError final : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace dunmora
