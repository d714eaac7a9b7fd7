#include "adapters/posix/LockedFile.h"

#include "adapters/posix/FileContent.h"
#include "adapters/posix/FileCopy.h"
#include "adapters/posix/FileError.h"
#include "platform/PlatformError.h"
#include "text/DisplayText.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <cstring>
#include <functional>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

namespace dunmora {

namespace {

/// Between two attempts to lock a file.
constexpr std::chrono::milliseconds kPause(2);

[[noreturn]] void throwChanged(const std::filesystem::path& path)
{
    throw PlatformError(quotedPath(path) + " has changed since it was read. " +
                        std::string(kReloadAndTryAgain));
}

/// Root can write a file without write permission; a user who removed the permission still meant
/// it.
void checkWriteBits(const struct stat& status, const std::filesystem::path& path)
{
    if ((status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) {
        throw PlatformError(quotedPath(path) + " cannot be changed: it is read-only.");
    }
}

bool sameTime(const timespec& a, const timespec& b)
{
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
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

/// Returns whether the file could be locked; false when another program has locked it.
bool lockIfFree(const Descriptor& file, const std::filesystem::path& name)
{
    if (uninterrupted([&] { return flock(file.number(), LOCK_EX | LOCK_NB); }) == 0) {
        return true;
    }
    if (errno != EWOULDBLOCK) {
        throwFileError(name, "cannot be locked", errno);
    }
    return false;
}

void lockAtOnce(const Descriptor& file, const std::filesystem::path& name)
{
    if (!lockIfFree(file, name)) {
        throwLocked(name);
    }
}

}  // namespace

LockedFile LockedFile::open(Paths names)
{
    LockedFile file(std::move(names));
    file.resolveNames();
    const auto& target = file.targets_.front();
    file.descriptor_ = openFile(target, O_RDWR | O_NOFOLLOW);
    if (!file.descriptor_.isOpen()) {
        const int error = errno;
        struct stat status {};
        if (error == EACCES && stat(target.c_str(), &status) == 0) {
            checkWriteBits(status, file.name());
        }
        throwFileError(file.name(), kCannotBeChanged, error);
    }
    file.status_ = statusOf(file.descriptor_, file.name());
    if (!S_ISREG(file.status_.st_mode)) {
        throwChanged(file.name());
    }
    checkWriteBits(file.status_, file.name());
    lockAtOnce(file.descriptor_, file.name());
    file.checkUnchanged();
    return file;
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
    descriptor_ = openFile(target, O_RDWR | O_CREAT | O_NOFOLLOW, S_IRUSR | S_IWUSR);
    if (!descriptor_.isOpen()) {
        throwFileError(name(), kCannotBeChanged, errno);
    }
    while (!lockIfFree(descriptor_, name())) {
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
    rewind();
    return readFile(descriptor_, name()).bytes;
}

void LockedFile::checkContent(const Pieces& expected) const
{
    constexpr std::size_t kBufferSize = std::size_t(1) << 18U;
    std::vector<char> buffer(std::clamp<std::size_t>(sizeOf(expected), 1, kBufferSize));
    const auto read = [&](std::size_t size) {
        const auto count = readSome(descriptor_, buffer.data(), size);
        if (count < 0) {
            throwFileError(name(), kCannotBeRead, errno);
        }
        return static_cast<std::size_t>(count);
    };
    rewind();
    for (auto piece : expected) {
        while (!piece.empty()) {
            const auto count = read(std::min(piece.size(), buffer.size()));
            if (count == 0 || std::memcmp(buffer.data(), piece.data(), count) != 0) {
                throwChanged(name());
            }
            piece.remove_prefix(count);
        }
    }
    if (read(1) != 0) {
        throwChanged(name());
    }
}

void LockedFile::checkUnchanged() const
{
    const auto now = statusOf(descriptor_, name());
    // Unlike the content's time, the time of the last status change cannot be set back.
    if (now.st_size != status_.st_size || !sameTime(contentTime(now), contentTime(status_)) ||
        !sameTime(changeTime(now), changeTime(status_)) ||
        !std::all_of(targets_.begin(), targets_.end(),
                     [&](const auto& target) { return isStillAt(target, status_); })) {
        throwChanged(name());
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

void LockedFile::rewind() const
{
    if (lseek(descriptor_.number(), 0, SEEK_SET) != 0) {
        throwFileError(name(), kCannotBeRead, errno);
    }
}

}  // namespace dunmora
