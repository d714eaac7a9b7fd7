#pragma once

#include "adapters/posix/Descriptor.h"

#include <sys/stat.h>

#include <ctime>
#include <optional>
#include <string>
#include <vector>

namespace dunmora {

/// File operations that differ between Linux and macOS.
/// Thread: any; may block on a disk. Errors: nothing is thrown; false, and errno.

/// An extended attribute of a file; its value is binary.
struct FileAttribute {
    std::string name;
    std::string value;
};

/// The extended attributes of an open file, access control lists included where the system keeps
/// them as attributes. Errors: nullopt, and errno.
std::optional<std::vector<FileAttribute>> attributesOf(const Descriptor& file);

/// Gives a file these extended attributes and removes the others where the system allows it.
bool setAttributes(const std::vector<FileAttribute>& attributes, const Descriptor& file);

/// The value of one extended attribute. Errors: nullopt, also when there is none.
std::optional<std::string> attributeOf(const Descriptor& file, const std::string& name);

/// Gives a file one more extended attribute, or another value of it.
bool setAttribute(const FileAttribute& attribute, const Descriptor& file);

/// Copies the extended attributes, access control lists included, and removes those that only `to`
/// has where the system allows it.
bool copyAttributes(const Descriptor& from, const Descriptor& to);

/// fsync; also flushes the drive's cache where the system supports it (F_FULLFSYNC). Repeated after
/// EINTR.
bool syncFile(const Descriptor& file);

/// The last change of the content (st_mtime).
timespec contentTime(const struct stat& status);

/// The last change of content or metadata (st_ctime).
timespec changeTime(const struct stat& status);

}  // namespace dunmora
