#include "adapters/posix/FileContent.h"

#include "adapters/posix/FileError.h"
#include "adapters/posix/ReadSideBySide.h"
#include "adapters/posix/ReadToEnd.h"
#include "platform/PlatformError.h"
#include "text/DisplayText.h"
#include "text/SideBySide.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstddef>
#include <utility>

namespace dunmora {

namespace {

/// Smaller files are read before another thread has started.
constexpr auto kSizeForThreads = std::size_t{8} << 20U;
constexpr auto kPieceSize = std::size_t{1} << 20U;

/// Reads a file that is probably of this size.
FileBytes contentOf(const Descriptor& file, const std::filesystem::path& path, std::size_t size,
                    std::uintmax_t largest)
{
    // The extra byte detects the end of the file, and a file that grows meanwhile.
    UnfinishedBytes bytes{FileBytes::allocate(size + 1), size + 1};
    if (size >= kSizeForThreads && size <= largest &&
        readSideBySide(file, path, {bytes.memory.get(), size}, kPieceSize, processors())) {
        bytes.size = size;
    }
    return readToEnd(file, path, std::move(bytes), largest);
}

}  // namespace

FileContent readFile(const std::filesystem::path& path, std::uintmax_t largest)
{
    const auto file = openFile(path, O_RDONLY);
    if (!file.isOpen()) {
        throwFileError(path, kCannotBeRead, errno);
    }
    return readFile(file, path, largest);
}

FileContent readFile(const Descriptor& file, const std::filesystem::path& path,
                     std::uintmax_t largest)
{
    const auto status = statusOf(file, path);
    if (S_ISDIR(status.st_mode)) {
        throwFileError(path, kCannotBeRead, EISDIR);
    }
    if (!S_ISREG(status.st_mode)) {
        throw PlatformError(quotedPath(path) + " is neither a file nor a folder.");
    }
    auto bytes = contentOf(file, path, static_cast<std::size_t>(status.st_size), largest);
    if (bytes.view().size() > largest) {
        throwFileError(path, kCannotBeRead, EFBIG);
    }
    return {identityOf(status), status.st_nlink, std::move(bytes)};
}

}  // namespace dunmora
