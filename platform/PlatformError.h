#pragma once

#include <stdexcept>
#include <string_view>

namespace dunmora {

/// Ends the message about a file or an address book that has changed since it was read. "It" is
/// what the message names last.
inline constexpr std::string_view kReloadAndTryAgain = "Reload it and try again.";

/// A failure of the platform (a file, a bus, a framework), described for the user in one line of
/// UTF-8. Adapters throw it in place of the foreign error; the core throws it only when no address
/// book is open.
class PlatformError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

}  // namespace dunmora
