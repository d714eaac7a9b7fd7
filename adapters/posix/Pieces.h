#pragma once

#include "adapters/posix/Descriptor.h"
#include "adapters/posix/FileBytes.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace dunmora {

/// A file's content as consecutive parts, so that parts of another file need not be copied.
using Pieces = std::vector<std::string_view>;

/// The number of bytes of all parts.
std::size_t sizeOf(const Pieces& content);

/// A copy of all parts in one piece.
FileBytes joined(const Pieces& content);

/// Writes all parts, joined to large blocks.
/// Thread: any; blocks on the disk. Errors: false, and errno.
bool writeAll(const Descriptor& file, const Pieces& content);

}  // namespace dunmora
