#pragma once

#include <span>
#include <string>
#include <vector>

namespace dunmora {

struct CliEnvironment;

/// Reads the uids in these files, one per line; "-" is standard input. Ignores blank lines, and a
/// carriage return before a line end. Everything else belongs to a uid.
/// Errors: PlatformError when a list cannot be read or is too large.
std::vector<std::string> readUidLists(std::span<const std::string> files, bool quiet,
                                      const CliEnvironment& environment);

}  // namespace dunmora
