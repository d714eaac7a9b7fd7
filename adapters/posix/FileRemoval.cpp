#include "adapters/posix/FileRemoval.h"

#include "adapters/posix/FileError.h"
#include "adapters/posix/ProcessShutdown.h"

#include <unistd.h>

#include <cerrno>
#include <utility>

namespace dunmora {

FileRemoval::FileRemoval(LockedFile file) : file_(std::move(file))
{
    file_.checkFolders(file_.links(), kCannotBeRemoved);
    file_.checkFolders(file_.targets(), kCannotBeRemoved);
}

void FileRemoval::commit()
{
    const ShutdownInhibitor inhibitor;
    file_.checkUnchanged();
    // Links first: a failure in between must not leave a broken link.
    auto paths = file_.links();
    paths.insert(paths.end(), file_.targets().begin(), file_.targets().end());
    for (const auto& path : paths) {
        if (unlink(path.c_str()) != 0) {
            throwFileError(done_.empty() ? file_.name() : path, kCannotBeRemoved, errno, done_);
        }
        done_.push_back(path);
    }
}

}  // namespace dunmora
