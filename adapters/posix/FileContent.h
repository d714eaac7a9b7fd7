#pragma once

#include "adapters/posix/Descriptor.h"
#include "adapters/posix/FileBytes.h"
#include "adapters/posix/FileIdentity.h"

#include <cstdint>
#include <filesystem>
#include <limits>

namespace dunmora {

/// A file as it was read.
struct FileContent {
    FileIdentity identity;
    /// How many hard links it has.
    std::uintmax_t links = 0;
    FileBytes bytes;
};

inline constexpr auto kAnySize = std::numeric_limits<std::uintmax_t>::max();

/// Reads a whole file of at most `largest` bytes, symbolic links followed. Never waits for a pipe,
/// and never reads a file that grows without end.
/// Thread: any; blocks on the disk.
/// Errors: PlatformError with the path and the reason, also for anything but a regular file.
FileContent readFile(const std::filesystem::path& path, std::uintmax_t largest = kAnySize);

/// Reads an open file from its current position; `path` names it in errors.
FileContent readFile(const Descriptor& file, const std::filesystem::path& path,
                     std::uintmax_t largest = kAnySize);

}  // namespace dunmora
