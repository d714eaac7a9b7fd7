#pragma once

#include "adapters/posix/Descriptor.h"
#include "adapters/posix/FileBytes.h"
#include "adapters/posix/Pieces.h"

#include <chrono>
#include <filesystem>
#include <functional>
#include <string_view>
#include <utility>
#include <vector>

#include <sys/stat.h>

namespace dunmora {

/// A file that is locked (flock) for a change, and its names. The lock does not stop programs that
/// do not use it; `checkUnchanged` detects their changes.
///
/// Thread: one at a time; blocks on the disk. Errors: PlatformError with the path and the reason.
class LockedFile final {
public:
    using Paths = std::vector<std::filesystem::path>;

    /// Locks an existing file without waiting. `names` are one or more paths of this file, which
    /// may be symbolic links.
    /// Errors: also when the file is read-only or locked by another program.
    static LockedFile open(Paths names);

    /// Throws as `open` and `checkFolders` do when the file or its folder is read-only; locks and
    /// opens nothing.
    static void checkWritable(Paths names);

    /// Called after each attempt to lock a file: pauses and returns true for another attempt, or
    /// returns false to give up.
    using TryAgain = std::function<bool()>;

    /// Allows attempts at short intervals until this time has passed from now.
    static TryAgain tryAgainFor(std::chrono::milliseconds time);

    /// Creates the file, for its owner only, and missing folders (mode 0700), and locks it. A
    /// symbolic link is followed, also when its target does not exist.
    /// Errors: also when another program has locked the file until `tryAgain` gave up.
    static LockedFile openOrCreate(const std::filesystem::path& name, const TryAgain& tryAgain);

    /// Reads the whole content.
    FileBytes content() const;

    /// Throws unless the content is exactly this, and remembers it for a change of the file. It
    /// must stay valid.
    void expectContent(Pieces expected);

    /// Throws when the file has been changed or replaced since it was locked.
    void checkUnchanged() const;

    /// Throws when the folder of one of these paths is not writable. `whatFails` is the start of
    /// the reason in the message, such as "cannot be changed".
    void checkFolders(const Paths& paths, std::string_view whatFails) const;

    /// The first of the names, for messages.
    const std::filesystem::path& name() const { return names_.front(); }
    /// The absolute paths of those names that are symbolic links.
    const Paths& links() const { return links_; }
    /// The absolute paths of the file itself; several when it has hard links.
    const Paths& targets() const { return targets_; }

    /// The content that was expected last.
    const Pieces& expected() const { return expected_; }

    /// Closes the file, also the lock; a `LockedFolder` must protect it from now on.
    void close() { descriptor_ = Descriptor(); }

    /// For reading only, so that another program's descriptors for writing can be noticed.
    const Descriptor& descriptor() const { return descriptor_; }
    /// The status at the time of the lock.
    const struct stat& status() const { return status_; }

private:
    explicit LockedFile(Paths names) : names_(std::move(names)) {}
    void createAndLock(const std::filesystem::path& target, const std::function<void()>& pause);
    void resolveNames();

    Paths names_;
    Paths links_;
    Paths targets_;
    Pieces expected_;
    Descriptor descriptor_;
    struct stat status_ {};
};

}  // namespace dunmora
