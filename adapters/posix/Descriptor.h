#pragma once

#include <sys/types.h>

#include <cstddef>
#include <filesystem>
#include <string_view>

namespace dunmora {

/// An open file of the system, closed when its owner goes; -1 is none.
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

/// As open(2), never inherited by other programs and never waiting for what is no file, such as a
/// pipe. When the process holds as many files as it may, it first asks for as many as the system
/// allows. Errors: a descriptor that is not open, and errno.
Descriptor openFile(const std::filesystem::path& path, int flags, mode_t mode = 0);

/// What is written into `in` comes out of `out`.
struct Pipe {
    Descriptor out;
    Descriptor in;
};

/// As pipe(2), never inherited by other programs. Errors: ends that are not open, and errno.
Pipe openPipe();

/// As read(2), begun again after a signal. Errors: -1, and errno.
ssize_t readSome(const Descriptor& file, char* place, std::size_t size);

/// Writes all of it. Errors: false, and errno.
bool writeAll(const Descriptor& file, std::string_view bytes);

/// Brings a folder's entries to the disk. Errors: false, and errno.
bool syncFolder(const std::filesystem::path& folder);

}  // namespace dunmora
