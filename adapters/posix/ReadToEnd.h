#pragma once

#include "adapters/posix/Descriptor.h"
#include "adapters/posix/FileBytes.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>

namespace dunmora {

/// Reads from the current position to the end, or until there are more than `largest` bytes.
/// `capacity`, at least 1, is that of the first buffer: one byte more than is expected saves a
/// second one.
/// Thread: any; blocks on what is read. Errors: PlatformError with the name and the reason.
FileBytes readToEnd(const Descriptor& file, const std::filesystem::path& name, std::size_t capacity,
                    std::uintmax_t largest);

}  // namespace dunmora
