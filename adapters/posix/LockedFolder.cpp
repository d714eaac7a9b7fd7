#include "adapters/posix/LockedFolder.h"

#include "adapters/posix/FileError.h"
#include "adapters/posix/Leftover.h"
#include "platform/PlatformError.h"
#include "text/DisplayText.h"

#include <fcntl.h>
#include <sys/file.h>

#include <algorithm>
#include <cerrno>
#include <chrono>

namespace dunmora {

namespace {

Descriptor openFolder(const std::filesystem::path& folder)
{
    return openFile(folder, O_RDONLY | O_DIRECTORY);
}

bool lockAtOnce(const Descriptor& folder)
{
    return uninterrupted([&] { return flock(folder.number(), LOCK_EX | LOCK_NB); }) == 0;
}

}  // namespace

LockedFolder::LockedFolder(const std::filesystem::path& folder,
                           const LockedFile::TryAgain& tryAgain)
    : descriptor_(openFolder(folder))
{
    if (!descriptor_.isOpen() && (errno == EMFILE || errno == ENFILE)) {
        throwFileError(folder, "cannot be locked", errno);
    }
    while (descriptor_.isOpen() && !lockAtOnce(descriptor_)) {
        if (errno != EWOULDBLOCK) {
            descriptor_ = Descriptor();
        } else if (!tryAgain()) {
            throw PlatformError(quotedPath(folder) + " is being changed by another program. "
                                                     "Try again later.");
        }
    }
}

bool LockedFolder::isLockedElsewhere(const std::filesystem::path& folder)
{
    const auto descriptor = openFolder(folder);
    return descriptor.isOpen() && !lockAtOnce(descriptor) && errno == EWOULDBLOCK;
}

LockedFile::TryAgain LockedFolder::forASecond()
{
    return LockedFile::tryAgainFor(std::chrono::seconds(1));
}

void LockedFolders::lock(const std::filesystem::path& folder, const LockedFile::TryAgain& tryAgain)
{
    if (const auto [found, isNew] = folders_.try_emplace(folder, folder, tryAgain);
        isNew && found->second.isLocked()) {
        removeUnusedFiles(folder);
    }
}

bool LockedFolders::areLocked() const
{
    return std::all_of(folders_.begin(), folders_.end(),
                       [](const auto& entry) { return entry.second.isLocked(); });
}

}  // namespace dunmora
