#pragma once

#include <filesystem>
#include <vector>

namespace dunmora {

/// A prepared change of one locked file: a `FileReplacement` or a `FileRemoval`. Nothing happens to
/// the file before `commit`, and the destructor discards a change that was not committed.
///
/// Thread: one at a time; blocks on the disk. Errors: PlatformError with the path and the reason.
class FileChange {
public:
    virtual ~FileChange() = default;

    /// Throws when the file has changed since it was locked.
    virtual void checkUnchanged() const = 0;

    /// Carries out the change under all of the file's names; an orderly exit of the process waits
    /// for it. Errors: also as `checkUnchanged`. `done` then lists what has changed despite the
    /// error.
    virtual void commit() = 0;

    /// The absolute paths that have been replaced or removed. Their folders must be flushed
    /// (`syncFolder`) before the change survives a power failure.
    virtual const std::vector<std::filesystem::path>& done() const = 0;
};

}  // namespace dunmora
