#pragma once

#include "adapters/posix/Descriptor.h"

#include <filesystem>
#include <string_view>
#include <vector>

#include <sys/stat.h>

namespace dunmora {

/// Turns failed system calls on files into PlatformError.
/// Thread: any.

inline constexpr std::string_view kCannotBeRead = "cannot be read";
inline constexpr std::string_view kCannotBeChanged = "cannot be changed";
inline constexpr std::string_view kCannotBeRemoved = "cannot be removed";

/// Throws a PlatformError such as: “book.vcf” cannot be read: Permission denied.
[[noreturn]] void throwFileError(const std::filesystem::path& path, std::string_view what,
                                 int error);

/// Also lists the other names of the file for which the same operation has succeeded.
[[noreturn]] void throwFileError(const std::filesystem::path& path, std::string_view what,
                                 int error, const std::vector<std::filesystem::path>& done);

/// Calls fstat(2). Errors: PlatformError about `path`.
struct stat statusOf(const Descriptor& file, const std::filesystem::path& path);

}  // namespace dunmora
