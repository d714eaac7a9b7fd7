#pragma once

#include "adapters/posix/TemporaryName.h"

#include <filesystem>
#include <set>
#include <string>
#include <vector>

namespace dunmora {

/// A file that a killed process has left under a temporary name.
struct Leftover {
    enum class Kind {
        /// A new file that never took its place. It holds nothing that the old one does not hold.
        Unused,
        /// The file as it was before the change, perhaps with another program's last change.
        Replaced,
        /// One of the two, or a new file that another program has written to before the change was
        /// reverted. The name does not tell: it has no inode, or the right one on another device,
        /// as when devices are numbered differently after a restart.
        Doubtful,
    };

    std::filesystem::path path;
    TemporaryName name;
    Kind kind;
};

/// Finds what killed processes have left in a folder. Returns nothing where the folder cannot be
/// listed.
/// Thread: any; blocks on the disk. Errors: none.
std::vector<Leftover> leftoversIn(const std::filesystem::path& folder);

/// Deletes the unused new files in a folder that nobody has locked. The folder must be locked.
/// Thread: any; blocks on the disk. Errors: none; what cannot be deleted stays.
void removeUnusedFiles(const std::filesystem::path& folder);

/// Sentences for the user about those leftovers in a folder that hold an old file, or may hold one.
/// `fileNames` limits them to those of some files; when it is empty, all are reported. A change
/// that another process is making at this moment is not reported. Thread: any; blocks on the disk.
/// Errors: none.
std::vector<std::string> interruptedChangesIn(const std::filesystem::path& folder,
                                              const std::set<std::string>& fileNames);

}  // namespace dunmora
