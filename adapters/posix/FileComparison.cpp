#include "adapters/posix/FileComparison.h"

#include "adapters/posix/FileBytes.h"
#include "adapters/posix/FileCopy.h"
#include "adapters/posix/FileIdentity.h"
#include "adapters/posix/ProcessShutdown.h"
#include "adapters/posix/ReadAt.h"
#include "text/DisplayText.h"
#include "text/SideBySide.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

namespace {

bool sameTime(const timespec& a, const timespec& b)
{
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

/// Some bytes of a content, and where they begin in its pieces.
struct Part {
    std::size_t begin = 0;
    std::size_t size = 0;
    std::size_t piece = 0;
    std::size_t inPiece = 0;
};

std::vector<Part> partsOf(const Pieces& content, std::size_t partSize)
{
    std::vector<Part> parts;
    Part part;
    for (std::size_t piece = 0; piece < content.size(); ++piece) {
        for (std::size_t position = 0; position < content[piece].size();) {
            const auto size = std::min(partSize - part.size, content[piece].size() - position);
            position += size;
            part.size += size;
            if (part.size == partSize) {
                parts.push_back(part);
                part = {part.begin + part.size, 0, piece, position};
            }
        }
    }
    if (part.size > 0) {
        parts.push_back(part);
    }
    return parts;
}

/// Whether the file has this part where it belongs.
bool hasPart(const Descriptor& file, const Pieces& content, Part part,
             const std::filesystem::path& name)
{
    // What has just been read should still be in the processor's cache.
    constexpr std::size_t kBufferSize = std::size_t{1} << 16U;
    const auto bufferSize = std::min(part.size, kBufferSize);
    const auto buffer = FileBytes::allocate(bufferSize);
    while (part.size > 0) {
        const auto size = std::min(part.size, bufferSize);
        if (readAt(file, name, {buffer.get(), size}, part.begin) < size) {
            return false;
        }
        for (std::string_view found(buffer.get(), size); !found.empty();) {
            const auto expected = content[part.piece].substr(part.inPiece, found.size());
            if (!found.starts_with(expected)) {
                return false;
            }
            found.remove_prefix(expected.size());
            part.inPiece += expected.size();
            if (part.inPiece == content[part.piece].size()) {
                ++part.piece;
                part.inPiece = 0;
            }
        }
        part.begin += size;
        part.size -= size;
        ShutdownInhibitor::reportProgress();
    }
    return true;
}

}  // namespace

bool hasContent(const Descriptor& file, const Pieces& content, const std::filesystem::path& name)
{
    // Smaller files are compared before another thread has started.
    constexpr auto kSizeForThreads = std::size_t{8} << 20U;
    constexpr auto kPartSize = std::size_t{1} << 20U;
    const auto threads = sizeOf(content) < kSizeForThreads ? 1 : processors();
    return hasContent(file, content, name, {kPartSize, threads});
}

bool hasContent(const Descriptor& file, const Pieces& content, const std::filesystem::path& name,
                const ComparisonMethod& method)
{
    const auto parts = partsOf(content, method.partSize);
    std::atomic<bool> isSame = true;
    runSideBySide(parts.size(), method.threads, [&](std::size_t i) {
        if (isSame && !hasPart(file, content, parts[i], name)) {
            isSame = false;
        }
    });
    std::array<char, 1> more{};
    return isSame && readAt(file, name, more, sizeOf(content)) == 0;
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
