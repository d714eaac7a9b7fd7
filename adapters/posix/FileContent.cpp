#include "adapters/posix/FileContent.h"

#include "adapters/posix/FileError.h"
#include "platform/PlatformError.h"
#include "text/DisplayText.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstddef>
#include <cstring>
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
    std::size_t capacity = static_cast<std::size_t>(status.st_size) + 1;
    auto bytes = FileBytes::allocate(capacity);
    std::size_t size = 0;
    while (true) {
        const auto count = readSome(file, bytes.get() + size, capacity - size);
        if (count < 0) {
            throwFileError(path, kCannotBeRead, errno);
        }
        if (count == 0) {
            break;
        }
        size += static_cast<std::size_t>(count);
        if (size > largest) {
            throwFileError(path, kCannotBeRead, EFBIG);
        }
        if (size == capacity) {
            auto larger = FileBytes::allocate(2 * capacity);
            std::memcpy(larger.get(), bytes.get(), size);
            bytes = std::move(larger);
            capacity *= 2;
        }
    }
    return {identityOf(status), status.st_nlink, FileBytes(std::move(bytes), size)};
}

}  // namespace dunmora
