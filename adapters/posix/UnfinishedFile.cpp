#include "adapters/posix/UnfinishedFile.h"

#include "adapters/posix/ProcessEnd.h"

#include <cerrno>
#include <cstdio>
#include <mutex>
#include <utility>

#include <fcntl.h>
#include <unistd.h>

namespace dunmora {

namespace {

std::mutex listing;
UnfinishedFile* first = nullptr;

}  // namespace

UnfinishedFile::UnfinishedFile(std::filesystem::path path, int flags, mode_t mode)
    : path_(std::move(path))
{
    const UnbrokenWork unbroken;
    descriptor_ = openFile(path_, flags | O_CREAT | O_EXCL, mode);
    if (!descriptor_.isOpen()) {
        return;
    }
    const std::lock_guard guard(listing);
    next_ = std::exchange(first, this);
    isListed_ = true;
}

UnfinishedFile::~UnfinishedFile()
{
    if (isListed_) {
        const UnbrokenWork unbroken;
        unlink(path_.c_str());
        leaveList();
    }
}

void UnfinishedFile::finish()
{
    const UnbrokenWork unbroken;
    leaveList();
}

bool UnfinishedFile::finishAs(const std::filesystem::path& target)
{
    const UnbrokenWork unbroken;
    const bool isDone = std::rename(path_.c_str(), target.c_str()) == 0;
    if (isDone) {
        leaveList();
    }
    return isDone;
}

void UnfinishedFile::leaveList()
{
    const std::lock_guard guard(listing);
    for (auto** at = &first; *at != nullptr; at = &(*at)->next_) {
        if (*at == this) {
            *at = next_;
            break;
        }
    }
    isListed_ = false;
}

void UnfinishedFile::takeAllAway()
{
    for (auto* file = first; file != nullptr; file = file->next_) {
        unlink(file->path_.c_str());
    }
}

}  // namespace dunmora
