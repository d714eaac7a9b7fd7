#pragma once

#include "adapters/posix/Pieces.h"

#include <filesystem>

namespace dunmora {

/// Creates a file that only its owner can read, writes it and flushes it to disk. An error or an
/// orderly exit of the process deletes the unfinished file.
/// Thread: any; blocks on the disk. Errors: PlatformError, also when the file exists already.
void writeNewFile(const std::filesystem::path& path, const Pieces& content);

}  // namespace dunmora
