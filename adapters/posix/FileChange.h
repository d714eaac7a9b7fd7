#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace dunmora {

/// A prepared change of one locked file: a `FileReplacement` or a `FileRemoval`. Nothing happens to
/// the file before `apply`. `FileChanges` calls the functions in their order.
///
/// No system call replaces a file only if it is unchanged. Therefore `apply` moves the old file to
/// a temporary name, where it is checked again before it is deleted: at every moment each file is
/// under its own name or a temporary one.
///
/// Thread: one at a time; blocks on the disk. Errors: PlatformError with the path and the reason.
class FileChange {
public:
    virtual ~FileChange() = default;

    /// Throws when the file has changed since it was locked.
    virtual void checkUnchanged() const = 0;

    /// Carries out the change under all of the file's names and keeps the old file under temporary
    /// names. Errors: also as `checkUnchanged`; `revert` is needed afterwards.
    virtual void apply() = 0;

    /// Throws unless what has been moved away is exactly the file that was expected, and nobody has
    /// it open for writing.
    virtual void checkOldFile() = 0;

    /// Throws when something has changed since `checkOldFile`.
    virtual void checkOldFileAgain() const = 0;

    /// Deletes the old file. Returns sentences about what could not be deleted, or an empty text.
    /// Errors: none.
    virtual std::string finish() = 0;

    /// Puts the old file back as far as possible, after any call but `finish`. Returns sentences
    /// about what could not be put back and where it is, or an empty text. Errors: none.
    virtual std::string revert() = 0;

    /// The file's absolute paths that have the change now: all of them after `apply`, and those
    /// that `revert` could not restore.
    virtual std::vector<std::filesystem::path> changedPaths() const = 0;

    /// The folders to be flushed (`syncFolder`) before the change survives a power failure.
    virtual std::vector<std::filesystem::path> folders() const = 0;
};

}  // namespace dunmora
