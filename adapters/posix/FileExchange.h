#pragma once

#include "adapters/posix/Descriptor.h"

#include <filesystem>

namespace dunmora {

/// What differs between Linux and macOS when a file takes the place of another.
/// Thread: any; may block on a disk. Errors: nothing is thrown; false, and errno.

/// Exchanges two files in one step.
/// Errors: `isUnsupported(errno)` where the file system cannot do that.
bool exchangeFiles(const std::filesystem::path& one, const std::filesystem::path& other);

/// Whether an error of `exchangeFiles` means that the system or the file system does not support
/// it.
bool isUnsupported(int error);

/// Renames a file to a name that no other file has.
/// Errors: EEXIST when there is one.
bool renameToNewName(const std::filesystem::path& from, const std::filesystem::path& to);

/// Whether the file system is known to keep a file's inode number as long as the file exists. FAT
/// and some file systems in user space give a file another number the next time it is looked up.
bool hasLastingInode(const std::filesystem::path& path);

/// Watches whether another program has a file open for writing, by a lease (fcntl(2), F_SETLEASE).
/// The lease lasts until the descriptor is closed; meanwhile a program that opens the file for
/// writing waits in open(2), as long as the system allows.
class WriterWatch final {
public:
    /// Begins to watch the file, which must be open for reading only and stay open.
    explicit WriterWatch(const Descriptor& file);

    /// Whether a program has had the file open for writing, or has tried to open it, since the
    /// watch began. Always false where the system or the file system has no leases.
    bool hasWriter() const;

private:
    enum class Lease { Granted, Refused, Unavailable };

    static Lease takeLease(int file);

    int file_;
    Lease lease_;
};

}  // namespace dunmora
