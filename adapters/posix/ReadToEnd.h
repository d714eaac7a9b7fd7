#pragma once

#include "adapters/posix/Descriptor.h"
#include "adapters/posix/FileBytes.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>

namespace dunmora {

/// Memory that something is being read into. The first `size` bytes of it have been read, fewer
/// than `capacity`.
struct UnfinishedBytes {
    FileBytes::Memory memory;
    std::size_t capacity;
    std::size_t size = 0;
};

/// Reads from the current position to the end, or until there are more than `largest` bytes.
/// `capacity`, at least 1, is that of the first buffer: one byte more than is expected saves a
/// second one.
/// Thread: any; blocks on what is read. Errors: PlatformError with the name and the reason.
FileBytes readToEnd(const Descriptor& file, const std::filesystem::path& name, std::size_t capacity,
                    std::uintmax_t largest);

/// Continues a reading in the same way. `largest` includes what has been read.
FileBytes readToEnd(const Descriptor& file, const std::filesystem::path& name,
                    UnfinishedBytes bytes, std::uintmax_t largest);

}  // namespace dunmora
