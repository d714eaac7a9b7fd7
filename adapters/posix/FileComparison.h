#pragma once

#include "adapters/posix/Descriptor.h"
#include "adapters/posix/Pieces.h"
#include "platform/PlatformError.h"

#include <cstddef>
#include <filesystem>

#include <sys/stat.h>

namespace dunmora {

/// Tells whether another program has changed a file.
/// Thread: any; blocks on the disk.

/// Whether the whole content of the open file is exactly this.
/// Errors: PlatformError about `name` when it cannot be read.
bool hasContent(const Descriptor& file, const Pieces& content, const std::filesystem::path& name);

/// How contents are compared; the result is the same.
struct ComparisonMethod {
    /// How many bytes are one thread's task, at least 1.
    std::size_t partSize;
    /// The most threads.
    std::size_t threads;
};

bool hasContent(const Descriptor& file, const Pieces& content, const std::filesystem::path& name,
                const ComparisonMethod& method);

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
