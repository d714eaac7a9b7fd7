#pragma once

#include "adapters/posix/FileChange.h"
#include "adapters/posix/LockedFile.h"

#include <filesystem>
#include <vector>

namespace dunmora {

/// Removes a locked file with all of its names.
class FileRemoval final : public FileChange {
public:
    /// Checks, as far as possible, that the file can be removed.
    explicit FileRemoval(LockedFile file);

    void checkUnchanged() const override { file_.checkUnchanged(); }
    void commit() override;
    const std::vector<std::filesystem::path>& done() const override { return done_; }

private:
    LockedFile file_;
    std::vector<std::filesystem::path> done_;
};

}  // namespace dunmora
