#include "adapters/posix/StreamContent.h"

#include "adapters/posix/FileError.h"
#include "adapters/posix/ReadToEnd.h"
#include "platform/PlatformError.h"
#include "text/DisplayText.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <string>

namespace dunmora {

namespace {

[[noreturn]] void throwTooLarge(const std::filesystem::path& name, std::uintmax_t largest)
{
    constexpr auto kMebibyte = std::uintmax_t{1} << 20U;
    throw PlatformError(quotedPath(name) + " is too large: Dunmora can read at most " +
                        std::to_string(largest / kMebibyte) + " MiB of it.");
}

}  // namespace

FileBytes readStream(const Descriptor& stream, const std::filesystem::path& name,
                     std::uintmax_t largest)
{
    constexpr auto kFirstCapacity = std::size_t{1} << 16U;
    auto bytes = readToEnd(stream, name, kFirstCapacity, largest);
    if (bytes.view().size() > largest) {
        throwTooLarge(name, largest);
    }
    return bytes;
}

FileBytes readStreamAt(const std::filesystem::path& path, std::uintmax_t largest)
{
    // Not openFile, whose O_NONBLOCK makes a pipe look empty until somebody writes into it.
    const Descriptor stream(
        uninterrupted([&] { return open(path.c_str(), O_RDONLY | O_CLOEXEC); }));
    if (!stream.isOpen()) {
        throwFileError(path, kCannotBeRead, errno);
    }
    return readStream(stream, path, largest);
}

FileBytes readStandardInput(std::uintmax_t largest)
{
    const Descriptor stream(fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0));
    if (!stream.isOpen()) {
        throwFileError(kStandardInputName, kCannotBeRead, errno);
    }
    return readStream(stream, kStandardInputName, largest);
}

}  // namespace dunmora
