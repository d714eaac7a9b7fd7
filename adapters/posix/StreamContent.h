#pragma once

#include "adapters/posix/Descriptor.h"
#include "adapters/posix/FileBytes.h"

#include <cstdint>
#include <filesystem>

namespace dunmora {

/// What messages call standard input.
inline constexpr auto kStandardInputName = "standard input";

// Read a stream of at most `largest` bytes to its end: a pipe, a terminal or a file.
// Thread: any; wait for the program that writes the stream.
// Errors: PlatformError with the stream's name and the reason. A stream that fails is never taken
// for one that has ended.

/// Reads an open stream from its current position; `name` names it in errors.
FileBytes readStream(const Descriptor& stream, const std::filesystem::path& name,
                     std::uintmax_t largest);

/// Opens and reads a file, or a pipe with a name.
FileBytes readStreamAt(const std::filesystem::path& path, std::uintmax_t largest);

FileBytes readStandardInput(std::uintmax_t largest);

}  // namespace dunmora
