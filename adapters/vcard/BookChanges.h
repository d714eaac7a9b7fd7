#pragma once

#include "adapters/posix/FileChange.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace dunmora {

/// Prepared changes of the files of one address book.
/// Thread: one at a time; blocks on the disk. Errors: PlatformError.
class BookChanges final {
public:
    /// `name` is a name of the changed file, for messages.
    void add(std::unique_ptr<FileChange> change, const std::filesystem::path& name);

    /// Commits the changes in order, calls `onCommitted` with the index of each, and flushes their
    /// folders. Nothing is changed when one of the files has changed since it was locked. An
    /// orderly exit of the process waits for all changes.
    /// Errors: stops at the first change that fails and flushes what has changed; the message lists
    /// the files that have changed and those that have not.
    void commit(const std::function<void(std::size_t)>& onCommitted);

private:
    struct Entry {
        std::unique_ptr<FileChange> change;
        std::filesystem::path name;
    };

    std::optional<std::string>
    commitUntilFailure(const std::function<void(std::size_t)>& onCommitted);
    std::string describe(const std::string& reason, std::size_t failed) const;
    std::string namesOf(std::size_t first, std::size_t last) const;
    std::string flushFolders() const;

    std::vector<Entry> entries_;
};

}  // namespace dunmora
