#include "adapters/posix/FileExchange.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/vfs.h>

#include <cerrno>
#include <csignal>
#include <cstdio>

namespace dunmora {

namespace {

bool renameWith(unsigned flags, const std::filesystem::path& from, const std::filesystem::path& to)
{
    return renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), flags) == 0;
}

/// Whether a lease says nothing about the programs on other machines. Such file systems refuse one
/// for reasons of their own.
bool isOnNetwork(int file)
{
    constexpr decltype(statfs::f_type) kCifsMagic = 0xFF534D42;
    struct statfs system {};
    return fstatfs(file, &system) == 0 &&
           (system.f_type == NFS_SUPER_MAGIC || system.f_type == SMB2_SUPER_MAGIC ||
            system.f_type == SMB_SUPER_MAGIC || system.f_type == kCifsMagic);
}

/// The system sends SIGIO, which would end the process, when another program asks for a file that
/// has a lease.
void ignoreLeaseSignal()
{
    static const auto previous = std::signal(SIGIO, SIG_IGN);
    static_cast<void>(previous);
}

}  // namespace

bool exchangeFiles(const std::filesystem::path& one, const std::filesystem::path& other)
{
    return renameWith(RENAME_EXCHANGE, one, other);
}

bool renameToNewName(const std::filesystem::path& from, const std::filesystem::path& to)
{
    if (renameWith(RENAME_NOREPLACE, from, to)) {
        return true;
    }
    if (!isUnsupported(errno)) {
        return false;
    }
    struct stat existing {};
    if (lstat(to.c_str(), &existing) == 0) {
        errno = EEXIST;
        return false;
    }
    return errno == ENOENT && std::rename(from.c_str(), to.c_str()) == 0;
}

bool hasLastingInode(const std::filesystem::path& path)
{
    constexpr decltype(statfs::f_type) kZfsMagic = 0x2FC12FC1;
    struct statfs system {};
    if (statfs(path.c_str(), &system) != 0) {
        return false;
    }
    switch (system.f_type) {
    case EXT4_SUPER_MAGIC:
    case XFS_SUPER_MAGIC:
    case BTRFS_SUPER_MAGIC:
    case F2FS_SUPER_MAGIC:
    case TMPFS_MAGIC:
    case OVERLAYFS_SUPER_MAGIC:
    case kZfsMagic:
        return true;
    default:
        return false;
    }
}

WriterWatch::Lease WriterWatch::takeLease(int file)
{
    ignoreLeaseSignal();
    if (isOnNetwork(file)) {
        return Lease::Unavailable;
    }
    if (fcntl(file, F_SETLEASE, F_RDLCK) == 0) {
        return Lease::Granted;
    }
    // EACCES: the file is another user's. EINVAL: the file system has no leases.
    return errno == EACCES || errno == EINVAL ? Lease::Unavailable : Lease::Refused;
}

bool WriterWatch::hasWriter() const
{
    return lease_ == Lease::Refused ||
           (lease_ == Lease::Granted && fcntl(file_, F_GETLEASE) != F_RDLCK);
}

}  // namespace dunmora
