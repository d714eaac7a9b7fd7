#pragma once

#include <chrono>
#include <optional>
#include <string_view>

namespace dunmora {

/// Parses the value of a REV property (RFC 6350 §4.3) in basic or extended form. A time without a
/// zone is UTC, a date without a time is midnight, and fractions of a second are dropped. Returns
/// nothing when the value is not a date.
/// Thread: any. Errors: none.
std::optional<std::chrono::sys_seconds> readRevision(std::string_view text);

}  // namespace dunmora
