#include "adapters/posix/LockedFile.h"

#include "adapters/posix/FileComparison.h"
#include "adapters/posix/FileContent.h"
#include "adapters/posix/FileError.h"
#include "platform/PlatformError.h"
#include "text/DisplayText.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <functional>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

namespace dunmora {

namespace {

/// Between two attempts to lock a file.
constexpr std::chrono::milliseconds kPause(2);

/// Root can write a file without write permission; a user who removed the permission still meant
/// it.
void checkWriteBits(const struct stat& status, const std::filesystem::path& path)
{
    if ((status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) {
        throw PlatformError(quotedPath(path) + " cannot be changed: it is read-only.");
    }
}

/// Throws unless the file may be written, without opening it.
void checkAccess(const std::filesystem::path& target, const struct stat& status,
                 const std::filesystem::path& name)
{
    checkWriteBits(status, name);
    if (faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) {
        throwFileError(name, kCannotBeChanged, errno);
    }
}

/// The path with all links resolved. Errors: PlatformError about `name`.
std::filesystem::path resolved(const std::filesystem::path& path, const std::filesystem::path& name)
{
    std::error_code error;
    auto full = std::filesystem::canonical(path, error);
    if (error) {
        throwFileError(name, kCannotBeChanged, error.value());
    }
    return full;
}

/// The end of a chain of symbolic links, whether or not a file exists there.
std::filesystem::path followed(const std::filesystem::path& name)
{
    constexpr int kMaximalLinks = 40;
    std::error_code error;
    auto file = std::filesystem::absolute(name);
    for (int links = 0; std::filesystem::is_symlink(file, error); ++links) {
        if (links == kMaximalLinks) {
            throwFileError(name, kCannotBeChanged, ELOOP);
        }
        file = file.parent_path() / std::filesystem::read_symlink(file, error);
    }
    return file;
}

/// Creates missing folders for the user alone, as the XDG base directory standard requires.
void createFolder(const std::filesystem::path& folder, const std::filesystem::path& name)
{
    std::error_code error;
    if (std::filesystem::is_directory(folder, error)) {
        return;
    }
    if (folder.has_relative_path()) {
        createFolder(folder.parent_path(), name);
    }
    if (mkdir(folder.c_str(), S_IRWXU) != 0 && errno != EEXIST) {
        throwFileError(name, kCannotBeChanged, errno);
    }
}

bool isStillAt(const std::filesystem::path& target, const struct stat& status)
{
    struct stat named {};
    return lstat(target.c_str(), &named) == 0 && identityOf(named) == identityOf(status);
}

[[noreturn]] void throwLocked(const std::filesystem::path& name)
{
    throw PlatformError(quotedPath(name) +
                        " cannot be changed: another program has locked it. Try again later.");
}

/// Locks the file exclusively unless another program has locked it. NFS emulates such a lock with
/// record locks, which need a descriptor for writing.
int lockAtOnce(Descriptor& file, const std::filesystem::path& target)
{
    const auto lock = [&] {
        return uninterrupted([&] { return flock(file.number(), LOCK_EX | LOCK_NB); });
    };
    if (lock() == 0) {
        return 0;
    }
    if (errno != EBADF) {
        return -1;
    }
    auto writable = openFile(target, O_RDWR | O_NOFOLLOW);
    if (!writable.isOpen()) {
        return -1;
    }
    file = std::move(writable);
    return lock();
}

/// Returns whether the file could be locked; false when another program has locked it.
bool lockIfFree(Descriptor& file, const std::filesystem::path& target,
                const std::filesystem::path& name)
{
    if (lockAtOnce(file, target) == 0) {
        return true;
    }
    if (errno != EWOULDBLOCK) {
        throwFileError(name, "cannot be locked", errno);
    }
    return false;
}

}  // namespace

LockedFile LockedFile::open(Paths names)
{
    LockedFile file(std::move(names));
    file.resolveNames();
    const auto& target = file.targets_.front();
    file.descriptor_ = openFile(target, O_RDONLY | O_NOFOLLOW);
    if (!file.descriptor_.isOpen()) {
        throwFileError(file.name(), kCannotBeChanged, errno);
    }
    if (!lockIfFree(file.descriptor_, target, file.name())) {
        throwLocked(file.name());
    }
    file.status_ = statusOf(file.descriptor_, file.name());
    if (!S_ISREG(file.status_.st_mode)) {
        throwChanged(file.name());
    }
    // A descriptor for writing would make every other one useless for `WriterWatch`.
    checkAccess(target, file.status_, file.name());
    file.checkUnchanged();
    return file;
}

void LockedFile::checkWritable(Paths names)
{
    LockedFile file(std::move(names));
    file.resolveNames();
    for (const auto& target : file.targets_) {
        if (stat(target.c_str(), &file.status_) != 0) {
            throwFileError(file.name(), kCannotBeChanged, errno);
        }
        checkAccess(target, file.status_, file.name());
    }
    file.checkFolders(file.targets_, kCannotBeChanged);
}

LockedFile::TryAgain LockedFile::tryAgainFor(std::chrono::milliseconds time)
{
    const auto end = std::chrono::steady_clock::now() + time;
    return [end] {
        if (std::chrono::steady_clock::now() >= end) {
            return false;
        }
        std::this_thread::sleep_for(kPause);
        return true;
    };
}

/// Calls `pause` between two attempts to lock the file.
void LockedFile::createAndLock(const std::filesystem::path& target,
                               const std::function<void()>& pause)
{
    descriptor_ = openFile(target, O_RDONLY | O_CREAT | O_NOFOLLOW, S_IRUSR | S_IWUSR);
    if (!descriptor_.isOpen()) {
        throwFileError(name(), kCannotBeChanged, errno);
    }
    while (!lockIfFree(descriptor_, target, name())) {
        pause();
    }
    status_ = statusOf(descriptor_, name());
}

LockedFile LockedFile::openOrCreate(const std::filesystem::path& name, const TryAgain& tryAgain)
{
    LockedFile file({name});
    const auto target = followed(name);
    createFolder(target.parent_path(), name);
    const auto pause = [&] {
        if (!tryAgain()) {
            throwLocked(name);
        }
    };
    file.createAndLock(target, pause);
    // If the previous holder replaced the file, lock the replacement.
    while (!isStillAt(target, file.status_)) {
        pause();
        file.createAndLock(target, pause);
    }
    if (!S_ISREG(file.status_.st_mode)) {
        throw PlatformError(quotedPath(name) + " is neither a file nor a folder.");
    }
    checkWriteBits(file.status_, name);
    file.resolveNames();
    return file;
}

void LockedFile::resolveNames()
{
    for (const auto& name : names_) {
        auto target = resolved(name, name);
        const auto folder = name.has_parent_path() ? name.parent_path() : ".";
        auto entry = resolved(folder, name) / name.filename();
        if (entry != target) {
            links_.push_back(std::move(entry));
        }
        if (std::find(targets_.begin(), targets_.end(), target) == targets_.end()) {
            targets_.push_back(std::move(target));
        }
    }
}

FileBytes LockedFile::content() const
{
    if (lseek(descriptor_.number(), 0, SEEK_SET) != 0) {
        throwFileError(name(), kCannotBeRead, errno);
    }
    return readFile(descriptor_, name()).bytes;
}

void LockedFile::expectContent(Pieces expected)
{
    if (!hasContent(descriptor_, expected, name())) {
        throwChanged(name());
    }
    expected_ = std::move(expected);
}

void LockedFile::checkUnchanged() const
{
    for (const auto& target : targets_) {
        struct stat now {};
        if (lstat(target.c_str(), &now) != 0 || !isUnchanged(status_, now)) {
            throwChanged(name());
        }
    }
}

void LockedFile::checkFolders(const Paths& paths, std::string_view whatFails) const
{
    for (const auto& path : paths) {
        if (faccessat(AT_FDCWD, path.parent_path().c_str(), W_OK | X_OK, AT_EACCESS) != 0) {
            throwFileError(name(), std::string(whatFails) + " because its folder is not writable",
                           errno);
        }
    }
}

}  // namespace dunmora
