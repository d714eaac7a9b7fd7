#pragma once

#include "adapters/posix/Descriptor.h"
#include "adapters/posix/FileBytes.h"
#include "adapters/posix/FileIdentity.h"

#include <filesystem>

namespace dunmora {

/// A file as it was read.
struct FileContent {
    FileIdentity identity;
    FileBytes bytes;
};

/// Reads a whole file, symbolic links followed. Never waits for a pipe.
/// Thread: any; blocks on the disk.
/// Errors: PlatformError with the path and the reason, also for anything but a regular file.
FileContent readFile(const std::filesystem::path& path);

/// Reads an open file from its current position; `path` names it in errors.
FileContent readFile(const Descriptor& file, const std::filesystem::path& path);

}  // namespace dunmora
