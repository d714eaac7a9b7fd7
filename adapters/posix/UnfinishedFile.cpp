#include "adapters/posix/UnfinishedFile.h"

#include "adapters/posix/ProcessShutdown.h"

#include <cerrno>
#include <cstdio>
#include <mutex>
#include <set>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace dunmora {

namespace {

std::mutex listing;

/// Never destroyed: the end of the process takes the files away.
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
        enterList();
    }
}

UnfinishedFile::~UnfinishedFile()
{
    if (isListed_) {
        const ShutdownInhibitor inhibitor;
        unlink(path_.c_str());
        leaveList();
    }
}

void UnfinishedFile::finish()
{
    const ShutdownInhibitor inhibitor;
    leaveList();
}

bool UnfinishedFile::finishAs(const std::filesystem::path& target)
{
    const ShutdownInhibitor inhibitor;
    const bool isDone = std::rename(path_.c_str(), target.c_str()) == 0;
    if (isDone) {
        leaveList();
    }
    return isDone;
}

void UnfinishedFile::enterList()
{
    const std::lock_guard guard(listing);
    unfinishedFiles().insert(this);
    isListed_ = true;
}

void UnfinishedFile::leaveList()
{
    const std::lock_guard guard(listing);
    unfinishedFiles().erase(this);
    isListed_ = false;
}

void UnfinishedFile::removeAll()
{
    const std::lock_guard guard(listing);
    for (const auto* const file : unfinishedFiles()) {
        unlink(file->path_.c_str());
    }
}

}  // namespace dunmora
