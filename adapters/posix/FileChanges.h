#pragma once

#include "adapters/posix/FileChange.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace dunmora {

/// Prepared changes of files that belong together: either all of them are made, or none.
/// Thread: one at a time; blocks on the disk. Errors: PlatformError.
class FileChanges final {
public:
    /// `name` is a name of the changed file, for messages.
    void add(std::unique_ptr<FileChange> change, const std::filesystem::path& name);

    /// Makes the changes and flushes their folders. When one fails, or a file has changed since it
    /// was locked, all of them are reverted. Calls `onCommitted` with the index of each change that
    /// has been made. An orderly exit of the process waits for the end.
    /// Errors: the first failure itself, such as FileHasChanged, when everything has been reverted.
    /// A PlatformError when a change could not be reverted, or an old file not be deleted; the
    /// message lists the files that have changed and those that have not, and where the old ones
    /// are.
    void commit(const std::function<void(std::size_t)>& onCommitted);

private:
    struct Entry {
        std::unique_ptr<FileChange> change;
        std::filesystem::path name;
    };

    void applyAndCheck();
    std::string revert();
    std::string finish();
    std::string listChanged() const;
    std::string flushFolders() const;

    std::vector<Entry> entries_;
    // How many changes have been applied, in whole or in part.
    std::size_t applied_ = 0;
};

}  // namespace dunmora
