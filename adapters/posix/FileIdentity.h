#pragma once

#include <compare>

#include <sys/stat.h>
#include <sys/types.h>

namespace dunmora {

/// Identifies a file under all of its names.
struct FileIdentity {
    dev_t device = 0;
    ino_t inode = 0;

    // NOLINTNEXTLINE(modernize-use-nullptr): there is no pointer here
    auto operator<=>(const FileIdentity&) const = default;
};

/// The identity of the file with this status.
inline FileIdentity identityOf(const struct stat& status)
{
    return {status.st_dev, status.st_ino};
}

}  // namespace dunmora
