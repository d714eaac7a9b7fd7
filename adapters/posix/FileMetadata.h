#pragma once

#include "adapters/posix/Descriptor.h"
#include "adapters/posix/FileCopy.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <sys/stat.h>
#include <sys/types.h>

namespace dunmora {

/// What a file has besides its names and its content, so that it can be created again as it was.
struct FileMetadata {
    mode_t mode = S_IRUSR | S_IWUSR;
    /// When one of these is missing, a new file keeps what the system gives it.
    std::optional<uid_t> owner;
    std::optional<gid_t> group;
    std::optional<std::vector<FileAttribute>> attributes;
};

/// The metadata of an open file with this status, without attributes that cannot be read.
/// Thread: any; blocks on the disk. Errors: none.
FileMetadata metadataOf(const Descriptor& file, const struct stat& status);

/// Gives a new file this metadata as far as the system allows it. Returns sentences about what it
/// did not allow, or an empty text; `name` is the file's.
/// Thread: any; blocks on the disk. Errors: none.
std::string setMetadata(const FileMetadata& metadata, const Descriptor& file,
                        const std::filesystem::path& name);

}  // namespace dunmora
