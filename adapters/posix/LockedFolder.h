#pragma once

#include "adapters/posix/Descriptor.h"
#include "adapters/posix/LockedFile.h"

#include <filesystem>
#include <map>

namespace dunmora {

/// A folder that is locked (flock) while files in it are changed, so that two of our processes
/// never change files of one folder at a time. Other programs do not notice the lock.
///
/// Thread: one at a time; blocks on the disk, and while another process holds the lock.
class LockedFolder final {
public:
    /// Tries again as long as `tryAgain` returns true.
    /// Errors: PlatformError when another process keeps the lock.
    explicit LockedFolder(const std::filesystem::path& folder,
                          const LockedFile::TryAgain& tryAgain = forASecond());

    /// False where the file system cannot lock a folder.
    bool isLocked() const { return descriptor_.isOpen(); }

    /// Whether another process has locked the folder at this moment.
    static bool isLockedElsewhere(const std::filesystem::path& folder);

    static LockedFile::TryAgain forASecond();

private:
    Descriptor descriptor_;
};

/// The folders of all files that one deletion changes.
class LockedFolders final {
public:
    /// Locks the folder unless it is locked already, and deletes the new files in it that a killed
    /// process has left behind unused.
    /// Errors: as the constructor of `LockedFolder`.
    void lock(const std::filesystem::path& folder,
              const LockedFile::TryAgain& tryAgain = LockedFolder::forASecond());

    /// Whether every folder could be locked.
    bool areLocked() const;

private:
    std::map<std::filesystem::path, LockedFolder> folders_;
};

}  // namespace dunmora
