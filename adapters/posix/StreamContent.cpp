#include "adapters/posix/StreamContent.h"

#include "adapters/posix/FileError.h"
#include "platform/PlatformError.h"
#include "text/DisplayText.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <string>
#include <utility>

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
    std::size_t capacity = kFirstCapacity;
    auto bytes = FileBytes::allocate(capacity);
    std::size_t size = 0;
    while (true) {
        const auto count = readSome(stream, bytes.get() + size, capacity - size);
        if (count < 0) {
            throwFileError(name, kCannotBeRead, errno);
        }
        if (count == 0) {
            return {std::move(bytes), size};
        }
        size += static_cast<std::size_t>(count);
        if (size > largest) {
            throwTooLarge(name, largest);
        }
        if (size == capacity) {
            auto larger = FileBytes::allocate(2 * capacity);
            std::memcpy(larger.get(), bytes.get(), size);
            bytes = std::move(larger);
            capacity *= 2;
        }
    }
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
