#pragma once

#include "adapters/posix/Descriptor.h"

#include <cstddef>
#include <filesystem>
#include <span>

namespace dunmora {

/// Fills the place from the file's current position on, in pieces of `pieceSize` bytes, at least 1,
/// on at most this many threads. The processors then share the work of providing the memory's pages
/// and of copying.
///
/// Returns whether the file had that many bytes and can be read like this. If so, its position is
/// after them; if not, it is unchanged and the content of the place is undefined.
/// Thread: any; blocks on the disk. Errors: PlatformError with the name and the reason.
bool readSideBySide(const Descriptor& file, const std::filesystem::path& name,
                    std::span<char> place, std::size_t pieceSize, std::size_t threads);

}  // namespace dunmora
