#include "adapters/posix/FileContent.h"

#include "adapters/posix/FileError.h"
#include "adapters/posix/ReadToEnd.h"
#include "platform/PlatformError.h"
#include "text/DisplayText.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstddef>
#include <utility>

namespace dunmora {

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
    // The extra byte detects the end of the file, and a file that grows meanwhile.
    auto bytes = readToEnd(file, path, static_cast<std::size_t>(status.st_size) + 1, largest);
    if (bytes.view().size() > largest) {
        throwFileError(path, kCannotBeRead, EFBIG);
    }
    return {identityOf(status), status.st_nlink, std::move(bytes)};
}

}  // namespace dunmora
