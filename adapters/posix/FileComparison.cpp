#include "adapters/posix/FileComparison.h"

#include "adapters/posix/FileCopy.h"
#include "adapters/posix/FileError.h"
#include "adapters/posix/FileIdentity.h"
#include "adapters/posix/ProcessShutdown.h"
#include "text/DisplayText.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

namespace dunmora {

namespace {

bool sameTime(const timespec& a, const timespec& b)
{
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

}  // namespace

bool hasContent(const Descriptor& file, const Pieces& content, const std::filesystem::path& name)
{
    constexpr std::size_t kBufferSize = std::size_t(1) << 18U;
    std::vector<char> buffer(std::clamp<std::size_t>(sizeOf(content), 1, kBufferSize));
    const auto read = [&](std::size_t size) {
        const auto count = readSome(file, buffer.data(), size);
        if (count < 0) {
            throwFileError(name, kCannotBeRead, errno);
        }
        return static_cast<std::size_t>(count);
    };
    if (lseek(file.number(), 0, SEEK_SET) != 0) {
        throwFileError(name, kCannotBeRead, errno);
    }
    for (auto piece : content) {
        while (!piece.empty()) {
            const auto count = read(std::min(piece.size(), buffer.size()));
            if (count == 0 || std::memcmp(buffer.data(), piece.data(), count) != 0) {
                return false;
            }
            piece.remove_prefix(count);
            ShutdownInhibitor::reportProgress();
        }
    }
    return read(1) == 0;
}

bool isUnchanged(const struct stat& before, const struct stat& now)
{
    // Unlike the content's time, the time of the last status change cannot be set back.
    return identityOf(now) == identityOf(before) && now.st_size == before.st_size &&
           sameTime(contentTime(now), contentTime(before)) &&
           sameTime(changeTime(now), changeTime(before));
}

FileHasChanged::FileHasChanged(const std::filesystem::path& path)
    : PlatformError(quotedPath(path) + " has changed since it was read. " +
                    std::string(kReloadAndTryAgain))
{
}

void throwChanged(const std::filesystem::path& path)
{
    throw FileHasChanged(path);
}

}  // namespace dunmora
