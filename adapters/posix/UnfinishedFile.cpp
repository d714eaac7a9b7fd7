#include "adapters/posix/UnfinishedFile.h"

#include "adapters/posix/FileExchange.h"
#include "adapters/posix/ProcessShutdown.h"

#include <cerrno>
#include <mutex>
#include <set>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace dunmora {

namespace {

std::mutex listMutex;

/// Never destroyed, because an exit may delete the files at any time.
std::set<const UnfinishedFile*>& unfinishedFiles()
{
    static auto& files = *new std::set<const UnfinishedFile*>;
    return files;
}

bool identify(const Descriptor& file, FileIdentity& identity)
{
    struct stat status {};
    if (fstat(file.number(), &status) != 0) {
        return false;
    }
    identity = identityOf(status);
    return true;
}

}  // namespace

UnfinishedFile::UnfinishedFile(std::filesystem::path path, int flags, mode_t mode)
    : path_(std::move(path))
{
    const ShutdownInhibitor inhibitor;
    descriptor_ = openFile(path_, flags | O_CREAT | O_EXCL, mode);
    if (!descriptor_.isOpen()) {
        return;
    }
    if (identify(descriptor_, identity_)) {
        enlist();
    } else {
        removeNew();
    }
}

UnfinishedFile::UnfinishedFile(std::filesystem::path path, const std::filesystem::path& source,
                               FileIdentity identity)
    : path_(std::move(path)), identity_(identity)
{
    const ShutdownInhibitor inhibitor;
    if (linkat(AT_FDCWD, source.c_str(), AT_FDCWD, path_.c_str(), AT_SYMLINK_FOLLOW) != 0) {
        return;
    }
    if (hasOwnPath()) {
        enlist();
    } else {
        removeNew();
    }
}

UnfinishedFile::~UnfinishedFile()
{
    if (isListed_) {
        const ShutdownInhibitor inhibitor;
        removeOwn();
        delist();
    }
}

void UnfinishedFile::finish()
{
    const ShutdownInhibitor inhibitor;
    delist();
}

void UnfinishedFile::takeBack()
{
    const ShutdownInhibitor inhibitor;
    enlist();
}

bool UnfinishedFile::renameTo(std::filesystem::path path)
{
    const ShutdownInhibitor inhibitor;
    if (!hasOwnPath() || !renameToNewName(path_, path)) {
        return false;
    }
    path_ = std::move(path);
    return true;
}

/// Whether the path still leads to this file. Otherwise sets errno.
bool UnfinishedFile::hasOwnPath() const
{
    struct stat named {};
    if (lstat(path_.c_str(), &named) != 0) {
        return false;
    }
    if (identityOf(named) != identity_) {
        errno = ESTALE;
        return false;
    }
    return true;
}

/// Deletes the file that has just been created and cannot be recognised later. Keeps errno.
void UnfinishedFile::removeNew()
{
    const int error = errno;
    unlink(path_.c_str());
    descriptor_ = Descriptor();
    errno = error;
}

void UnfinishedFile::removeOwn() const
{
    if (hasOwnPath()) {
        unlink(path_.c_str());
    }
}

void UnfinishedFile::enlist()
{
    const std::lock_guard guard(listMutex);
    unfinishedFiles().insert(this);
    isListed_ = true;
}

void UnfinishedFile::delist()
{
    const std::lock_guard guard(listMutex);
    unfinishedFiles().erase(this);
    isListed_ = false;
}

void UnfinishedFile::removeAll()
{
    const std::lock_guard guard(listMutex);
    for (const auto* const file : unfinishedFiles()) {
        file->removeOwn();
    }
}

}  // namespace dunmora
