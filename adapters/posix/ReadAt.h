#pragma once

#include "adapters/posix/Descriptor.h"

#include <cstddef>
#include <filesystem>
#include <span>

namespace dunmora {

/// Fills the place with the bytes of an open file from this position on. Returns how many bytes it
/// has read: fewer than there is place for only where the file ends. The descriptor's own position
/// neither matters nor changes. `name` is for errors.
/// Thread: any, several at once; blocks on the disk. Errors: PlatformError.
std::size_t readAt(const Descriptor& file, const std::filesystem::path& name, std::span<char> place,
                   std::size_t position);

}  // namespace dunmora
