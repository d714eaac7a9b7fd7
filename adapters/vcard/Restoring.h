#pragma once

#include "adapters/posix/FileChanges.h"
#include "adapters/posix/FileCreation.h"
#include "adapters/posix/LockedFile.h"
#include "adapters/posix/LockedFolder.h"
#include "adapters/posix/OpenFiles.h"
#include "platform/CardRestorer.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace dunmora {

/// Changes the files of a book to put people back: all of them or none.
/// Thread: one at a time; blocks on the disk. Errors: PlatformError.
class Restoring final {
public:
    /// What one change, or none, does for the people of a file.
    struct Step {
        std::size_t restored = 0;
        std::size_t present = 0;
        std::vector<std::string> remarks;
    };

    /// There will be at most so many changes.
    explicit Restoring(std::size_t changes) : openFiles_(openFilesFor(changes)) {}

    void lockFoldersOf(const LockedFile& file);
    void lockFoldersOf(const NewNames& names);

    /// Adds a step that changes nothing.
    void add(Step step);
    /// Adds the step of a `FileReplacement` or a `FileCreation`, whose folders have been locked.
    template <typename Change>
    void add(Step step, std::unique_ptr<Change> change, const std::filesystem::path& name)
    {
        if (openFiles_ == OpenFiles::Close && folders_.areLocked()) {
            change->closeFiles();
        }
        add(std::move(step));
        changed_.push_back(steps_.size() - 1);
        changes_.add(std::move(change), name);
    }

    struct Outcome {
        Restoration result;
        // For each step, in the order in which they were added.
        std::vector<bool> isDone;
    };

    /// Makes the changes. Errors: also when nothing was changed.
    Outcome commit();

private:
    std::vector<Step> steps_;
    // The step of each change.
    std::vector<std::size_t> changed_;
    LockedFolders folders_;
    OpenFiles openFiles_;
    FileChanges changes_;
};

}  // namespace dunmora
