#pragma once

#include <sys/types.h>

#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <string_view>

namespace dunmora {

/// Owns a file descriptor and closes it; -1 means none.
class Descriptor final {
public:
    explicit Descriptor(int number = -1) : number_(number) {}
    ~Descriptor();
    Descriptor(Descriptor&& other) noexcept;
    Descriptor& operator=(Descriptor&& other) noexcept;
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    bool isOpen() const { return number_ >= 0; }
    int number() const { return number_; }

private:
    int number_;
};

/// Repeats a system call that returns -1 while signals interrupt it (EINTR), and returns its
/// result.
template <typename Call>
auto uninterrupted(const Call& call)
{
    auto result = call();
    while (result == -1 && errno == EINTR) {
        result = call();
    }
    return result;
}

/// Calls open(2) with O_CLOEXEC, and with O_NONBLOCK so that it never waits for a pipe. When the
/// process has reached its limit of open files, raises the limit to the system's maximum and tries
/// again. Repeats it after EINTR. Errors: a descriptor that is not open, and errno.
Descriptor openFile(const std::filesystem::path& path, int flags, mode_t mode = 0);

/// Whether the limit of open files allows this many, or has been raised so that it does.
bool canOpenFiles(std::size_t count);

/// A pipe: bytes written to `in` are read from `out`.
struct Pipe {
    Descriptor out;
    Descriptor in;
};

/// Calls pipe(2) and sets FD_CLOEXEC. Errors: ends that are not open, and errno.
Pipe openPipe();

/// Calls read(2) and repeats it after EINTR. Errors: -1, and errno.
ssize_t readSome(const Descriptor& file, char* place, std::size_t size);

/// Writes all bytes. Errors: false, and errno.
bool writeAll(const Descriptor& file, std::string_view bytes);

/// Calls fsync on the folder, so that created, renamed and deleted entries survive a power failure.
/// Errors: false, and errno.
bool syncFolder(const std::filesystem::path& folder);

}  // namespace dunmora
