#include "adapters/posix/Descriptor.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <utility>

namespace dunmora {

namespace {

/// Returns whether the limit was raised.
bool raiseDescriptorLimit()
{
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= limit.rlim_max) {
        return false;
    }
    limit.rlim_cur = limit.rlim_max;
    return setrlimit(RLIMIT_NOFILE, &limit) == 0;
}

}  // namespace

Descriptor::~Descriptor()
{
    if (isOpen()) {
        close(number_);
    }
}

Descriptor::Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}

Descriptor& Descriptor::operator=(Descriptor&& other) noexcept
{
    std::swap(number_, other.number_);
    return *this;
}

Descriptor openFile(const std::filesystem::path& path, int flags, mode_t mode)
{
    const auto number = [&] {
        return uninterrupted(
            [&] { return open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK, mode); });
    };
    Descriptor file(number());
    if (!file.isOpen() && errno == EMFILE && raiseDescriptorLimit()) {
        file = Descriptor(number());
    }
    return file;
}

bool canOpenFiles(std::size_t count)
{
    const auto allows = [&] {
        rlimit limit{};
        return getrlimit(RLIMIT_NOFILE, &limit) == 0 && limit.rlim_cur >= count;
    };
    return allows() || (raiseDescriptorLimit() && allows());
}

Pipe openPipe()
{
    std::array<int, 2> ends{-1, -1};
    if (pipe(ends.data()) == 0) {
        for (const int end : ends) {
            fcntl(end, F_SETFD, FD_CLOEXEC);
        }
    }
    return {Descriptor(ends[0]), Descriptor(ends[1])};
}

ssize_t readSome(const Descriptor& file, char* place, std::size_t size)
{
    return uninterrupted([&] { return read(file.number(), place, size); });
}

bool writeAll(const Descriptor& file, std::string_view bytes)
{
    while (!bytes.empty()) {
        const auto count =
            uninterrupted([&] { return write(file.number(), bytes.data(), bytes.size()); });
        if (count < 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

bool syncFolder(const std::filesystem::path& folder)
{
    const auto descriptor = openFile(folder, O_RDONLY | O_DIRECTORY);
    // EINVAL: the file system does not support fsync on folders.
    return descriptor.isOpen() &&
           (uninterrupted([&] { return fsync(descriptor.number()); }) == 0 || errno == EINVAL);
}

}  // namespace dunmora
