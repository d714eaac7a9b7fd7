#pragma once

#include "adapters/posix/FileIdentity.h"

#include <filesystem>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace dunmora {

/// The hidden name beside a file that its new content has before it is exchanged with the file, and
/// the old content afterwards: `.dunmora-DEVICE-INODE-NUMBER-NAME`.
///
/// Device and inode are those of the new file. After a crash they tell whether the exchange took
/// place: if it did, the file under this name is another one. The device is included because files
/// of one folder can have the same inode number where file systems are stacked.
///
/// Before an exchange is reverted, the old file gets a name without an inode: another program may
/// have written to the new file, so it must not pass for one that never took its place.
struct TemporaryName {
    /// The device and inode 0 when the file was to be removed and nothing takes its place; all 0 in
    /// the name of a file that has been reverted.
    FileIdentity newFile;
    /// The name of the file that is changed, without the end of a long one.
    std::string fileName;

    /// Nothing when it is another kind of name.
    static std::optional<TemporaryName> parsed(std::string_view name);

    /// Whether it can be the temporary name of a file with this name.
    bool belongsTo(std::string_view name) const;
};

/// The start of every temporary name.
inline constexpr std::string_view kTemporaryPrefix = ".dunmora-";
/// The start of the name of a new file that is still empty. It becomes a temporary name at once.
inline constexpr std::string_view kNewFilePrefix = ".dunmora-new-";

/// The temporary path beside `target`. `number` distinguishes it from files that are left from
/// earlier changes.
std::filesystem::path temporaryPath(const std::filesystem::path& target, FileIdentity newFile,
                                    unsigned number);

/// Calls `use` with temporary paths until it succeeds, or fails for another reason than an existing
/// file (EEXIST). Returns whether it has succeeded. Errors: false, and errno of `use`.
bool useTemporaryPath(const std::filesystem::path& target, FileIdentity newFile,
                      const std::function<bool(const std::filesystem::path&)>& use);

}  // namespace dunmora
