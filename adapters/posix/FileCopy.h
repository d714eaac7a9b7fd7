#pragma once

#include "adapters/posix/Descriptor.h"

#include <sys/stat.h>

#include <ctime>

namespace dunmora {

/// What systems of the POSIX kind do each in their own way about a file and its copy.
/// Thread: any; may block on a disk. Errors: none is thrown; errno tells of the one that occurred.

/// Gives the new file the extended attributes of the old one, access control lists included, and
/// as far as the system lets it no others. Returns whether it has them.
bool copyAttributes(const Descriptor& from, const Descriptor& to);

/// Brings the file's content and length to the disk, past the disk's own memory where the system
/// can. Returns whether it did.
bool syncFile(const Descriptor& file);

/// When the content last changed.
timespec contentTime(const struct stat& status);

/// When anything about the file last changed.
timespec changeTime(const struct stat& status);

}  // namespace dunmora
