#pragma once

#include "adapters/posix/DisplacedFile.h"
#include "adapters/posix/FileChange.h"
#include "adapters/posix/FileIdentity.h"
#include "adapters/posix/LockedFile.h"
#include "adapters/posix/OpenFiles.h"

#include <filesystem>
#include <string>
#include <vector>

namespace dunmora {

/// Removes a locked file with all of its names. They become temporary names first, so that the file
/// can be checked again and put back.
class FileRemoval final : public FileChange {
public:
    /// Checks, as far as possible, that the file can be removed.
    explicit FileRemoval(LockedFile file);

    /// Closes the file until it is needed. A `LockedFolder` must protect it.
    void closeFiles();

    void checkUnchanged() const override { file_.checkUnchanged(); }
    void apply() override;
    void checkOldFile() override;
    void checkOldFileAgain() const override;
    std::string finish() override;
    std::string revert() override;
    std::vector<std::filesystem::path> changedPaths() const override;
    std::vector<std::filesystem::path> folders() const override;

private:
    struct Place {
        std::filesystem::path path;
        // The file, or the symbolic link itself.
        FileIdentity identity;
        bool isLink = false;
        // Empty while the file is in its place.
        std::filesystem::path temporary;
    };

    void moveAway(Place& place);

    LockedFile file_;
    OpenFiles openFiles_ = OpenFiles::Keep;
    std::vector<Place> places_;
    DisplacedFile old_;
};

}  // namespace dunmora
