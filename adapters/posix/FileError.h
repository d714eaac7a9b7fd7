#pragma once

#include "adapters/posix/Descriptor.h"

#include <filesystem>
#include <string>
#include <string_view>

#include <sys/stat.h>

namespace dunmora {

/// Turns failed system calls on files into PlatformError.
/// Thread: any.

inline constexpr std::string_view kCannotBeRead = "cannot be read";
inline constexpr std::string_view kCannotBeChanged = "cannot be changed";
inline constexpr std::string_view kCannotBeCreated = "cannot be created";
inline constexpr std::string_view kCannotBeRemoved = "cannot be removed";

/// Throws a PlatformError such as: “book.vcf” cannot be read: Permission denied.
[[noreturn]] void throwFileError(const std::filesystem::path& path, std::string_view what,
                                 int error);

/// A sentence about a file that could not be put back in its place.
std::string couldNotBeRestored(const std::filesystem::path& path,
                               const std::filesystem::path& temporary, int error);

/// Appends sentences to a message, with a blank between them. Either may be empty.
void appendSentences(std::string& message, std::string_view sentences);

/// Calls fstat(2). Errors: PlatformError about `path`.
struct stat statusOf(const Descriptor& file, const std::filesystem::path& path);

}  // namespace dunmora
