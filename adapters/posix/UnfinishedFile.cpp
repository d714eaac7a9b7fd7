#include "adapters/posix/UnfinishedFile.h"

#include "adapters/posix/FileIdentity.h"
#include "adapters/posix/ProcessShutdown.h"

#include <cerrno>
#include <cstdio>
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

}  // namespace

UnfinishedFile::UnfinishedFile(std::filesystem::path path, int flags, mode_t mode)
    : path_(std::move(path))
{
    const ShutdownInhibitor inhibitor;
    descriptor_ = openFile(path_, flags | O_CREAT | O_EXCL, mode);
    if (descriptor_.isOpen()) {
        enlist();
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

bool UnfinishedFile::finishAs(const std::filesystem::path& target)
{
    const ShutdownInhibitor inhibitor;
    const bool isDone = hasOwnPath() && std::rename(path_.c_str(), target.c_str()) == 0;
    if (isDone) {
        delist();
    }
    return isDone;
}

/// Whether the path still leads to this file. Otherwise sets errno.
bool UnfinishedFile::hasOwnPath() const
{
    struct stat named {};
    struct stat own {};
    if (lstat(path_.c_str(), &named) != 0 || fstat(descriptor_.number(), &own) != 0) {
        return false;
    }
    if (identityOf(named) != identityOf(own)) {
        errno = ESTALE;
        return false;
    }
    return true;
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
