#pragma once

#include "adapters/posix/Descriptor.h"
#include "adapters/posix/Pieces.h"
#include "platform/PlatformError.h"

#include <filesystem>

#include <sys/stat.h>

namespace dunmora {

/// Tells whether another program has changed a file.
/// Thread: any; blocks on the disk.

/// Whether the whole content of the open file is exactly this.
/// Errors: PlatformError about `name` when it cannot be read.
bool hasContent(const Descriptor& file, const Pieces& content, const std::filesystem::path& name);

/// Whether two statuses are of the same file with the same size and times.
bool isUnchanged(const struct stat& before, const struct stat& now);

/// Such as: “book.vcf” has changed since it was read. Reload it and try again.
class FileHasChanged final : public PlatformError {
public:
    explicit FileHasChanged(const std::filesystem::path& path);
};

/// Throws a FileHasChanged.
[[noreturn]] void throwChanged(const std::filesystem::path& path);

}  // namespace dunmora
