#include "adapters/posix/FileReplacement.h"

#include "adapters/posix/FileCopy.h"
#include "adapters/posix/FileError.h"
#include "adapters/posix/ProcessShutdown.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <string>
#include <utility>

namespace dunmora {

namespace {

#ifdef O_TMPFILE
constexpr int kNamelessFile = O_TMPFILE;
#else
constexpr int kNamelessFile = 0;
#endif

constexpr mode_t kOwnerOnly = S_IRUSR | S_IWUSR;

/// The path by which a file without a name can be linked.
std::string descriptorPath(const Descriptor& file)
{
    return "/proc/self/fd/" + std::to_string(file.number());
}

/// Creates a file without a name; not open where the system cannot do that or give it a name later.
Descriptor createNamelessFile(const std::filesystem::path& folder)
{
    if constexpr (kNamelessFile != 0) {
        auto file = openFile(folder, kNamelessFile | O_RDWR, kOwnerOnly);
        if (file.isOpen() && access(descriptorPath(file).c_str(), F_OK) == 0) {
            return file;
        }
    }
    return Descriptor();
}

}  // namespace

FileReplacement::FileReplacement(LockedFile file, const Pieces& content) : file_(std::move(file))
{
    file_.checkFolders(file_.targets(), kCannotBeChanged);
    createFile();
    if (!newFile().isOpen() || !writeAll(newFile(), content)) {
        throwFileError(file_.name(), kCannotBeChanged, errno);
    }
    copyMetadata();
    if (!syncFile(newFile())) {
        throwFileError(file_.name(), kCannotBeChanged, errno);
    }
}

void FileReplacement::createFile()
{
    const auto& target = file_.targets().front();
    nameless_ = createNamelessFile(target.parent_path());
    if (!nameless_.isOpen()) {
        const auto path = besideTarget(target, "new");
        unlink(path.c_str());
        named_.emplace(path, O_RDWR, kOwnerOnly);
    }
}

void FileReplacement::copyMetadata() const
{
    constexpr mode_t kAllModeBits = 07777;
    const auto& old = file_.status();
    const auto created = statusOf(newFile(), file_.name());
    const bool hasOtherOwner = created.st_uid != old.st_uid || created.st_gid != old.st_gid;
    if (hasOtherOwner && fchown(newFile().number(), old.st_uid, old.st_gid) != 0) {
        throwFileError(file_.name(), "cannot be changed without changing its owner", errno);
    }
    // fchown clears some of the mode's bits.
    if ((hasOtherOwner || created.st_mode != old.st_mode) &&
        fchmod(newFile().number(), old.st_mode & kAllModeBits) != 0) {
        throwFileError(file_.name(), "cannot be changed without changing its permissions", errno);
    }
    if (!copyAttributes(file_.descriptor(), newFile())) {
        throwFileError(file_.name(), "cannot be changed without losing extended attributes", errno);
    }
}

void FileReplacement::commit()
{
    const ShutdownInhibitor inhibitor;
    file_.checkUnchanged();
    for (const auto& target : file_.targets()) {
        replace(target);
        done_.push_back(target);
    }
}

void FileReplacement::replace(const std::filesystem::path& target)
{
    // The last target gets the new file itself, because not every file system supports links.
    const bool isLast = &target == &file_.targets().back();
    if (named_ && isLast) {
        if (!named_->finishAs(target)) {
            fail(target, errno);
        }
        return;
    }
    const auto source = named_ ? named_->path().string() : descriptorPath(nameless_);
    const auto link = besideTarget(target, "link");
    unlink(link.c_str());
    if (linkat(AT_FDCWD, source.c_str(), AT_FDCWD, link.c_str(), AT_SYMLINK_FOLLOW) != 0) {
        fail(target, errno);
    }
    // No check here that `link` is still the new file: it would be as far from the rename as the
    // linkat is, and no system call renames only a certain file.
    if (rename(link.c_str(), target.c_str()) != 0) {
        const int error = errno;
        unlink(link.c_str());
        fail(target, error);
    }
}

const Descriptor& FileReplacement::newFile() const
{
    return named_ ? named_->descriptor() : nameless_;
}

/// A hidden name that depends on the locked file alone: only the holder of its lock uses it, and
/// deletes first what a killed process may have left under it. The device is part of it because
/// files of one folder can have the same inode number where file systems are stacked.
std::filesystem::path FileReplacement::besideTarget(const std::filesystem::path& target,
                                                    std::string_view suffix) const
{
    return target.parent_path() /
           (".dunmora-" + std::to_string(file_.status().st_dev) + "-" +
            std::to_string(file_.status().st_ino) + "." + std::string(suffix));
}

void FileReplacement::fail(const std::filesystem::path& target, int error) const
{
    throwFileError(done_.empty() ? file_.name() : target, kCannotBeChanged, error, done_);
}

}  // namespace dunmora
