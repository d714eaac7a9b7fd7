#include "tests/faults/SystemCallName.h"

#include <fcntl.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstring>
#include <string_view>

namespace dunmora::test {

namespace {

/// The arguments that say which file is meant.
enum class Names { Nothing, Descriptor, Path, PathIn, TwoPaths, TwoPathsIn };

struct Known {
    long number;
    std::string_view name;
    Names names;
};

constexpr std::array kKnown{
    Known{SYS_access, "access", Names::Path},
    Known{SYS_brk, "brk", Names::Nothing},
    Known{SYS_chdir, "chdir", Names::Path},
    Known{SYS_clone, "clone", Names::Nothing},
    Known{SYS_clone3, "clone3", Names::Nothing},
    Known{SYS_close, "close", Names::Descriptor},
    Known{SYS_copy_file_range, "copy_file_range", Names::Descriptor},
    Known{SYS_dup, "dup", Names::Descriptor},
    Known{SYS_execve, "execve", Names::Path},
    Known{SYS_exit_group, "exit_group", Names::Nothing},
    Known{SYS_faccessat, "faccessat", Names::PathIn},
    Known{SYS_faccessat2, "faccessat2", Names::PathIn},
    Known{SYS_fchmod, "fchmod", Names::Descriptor},
    Known{SYS_fchown, "fchown", Names::Descriptor},
    Known{SYS_fcntl, "fcntl", Names::Descriptor},
    Known{SYS_fdatasync, "fdatasync", Names::Descriptor},
    Known{SYS_fgetxattr, "fgetxattr", Names::Descriptor},
    Known{SYS_flistxattr, "flistxattr", Names::Descriptor},
    Known{SYS_flock, "flock", Names::Descriptor},
    Known{SYS_fremovexattr, "fremovexattr", Names::Descriptor},
    Known{SYS_fsetxattr, "fsetxattr", Names::Descriptor},
    Known{SYS_fstat, "fstat", Names::Descriptor},
    Known{SYS_fstatfs, "fstatfs", Names::Descriptor},
    Known{SYS_fsync, "fsync", Names::Descriptor},
    Known{SYS_ftruncate, "ftruncate", Names::Descriptor},
    Known{SYS_futex, "futex", Names::Nothing},
    Known{SYS_getcwd, "getcwd", Names::Nothing},
    Known{SYS_getdents64, "getdents64", Names::Descriptor},
    Known{SYS_geteuid, "geteuid", Names::Nothing},
    Known{SYS_getpid, "getpid", Names::Nothing},
    Known{SYS_getrandom, "getrandom", Names::Nothing},
    Known{SYS_getuid, "getuid", Names::Nothing},
    Known{SYS_ioctl, "ioctl", Names::Descriptor},
    Known{SYS_linkat, "linkat", Names::TwoPathsIn},
    Known{SYS_lseek, "lseek", Names::Descriptor},
    Known{SYS_madvise, "madvise", Names::Nothing},
    Known{SYS_mmap, "mmap", Names::Nothing},
    Known{SYS_mprotect, "mprotect", Names::Nothing},
    Known{SYS_mremap, "mremap", Names::Nothing},
    Known{SYS_munmap, "munmap", Names::Nothing},
    Known{SYS_newfstatat, "newfstatat", Names::PathIn},
    Known{SYS_openat, "openat", Names::PathIn},
    Known{SYS_pread64, "pread64", Names::Descriptor},
    Known{SYS_prlimit64, "prlimit64", Names::Nothing},
    Known{SYS_pwrite64, "pwrite64", Names::Descriptor},
    Known{SYS_read, "read", Names::Descriptor},
    Known{SYS_readlinkat, "readlinkat", Names::PathIn},
    Known{SYS_renameat2, "renameat2", Names::TwoPathsIn},
    Known{SYS_rt_sigaction, "rt_sigaction", Names::Nothing},
    Known{SYS_rt_sigprocmask, "rt_sigprocmask", Names::Nothing},
    Known{SYS_statfs, "statfs", Names::Path},
    Known{SYS_statx, "statx", Names::PathIn},
    Known{SYS_sysinfo, "sysinfo", Names::Nothing},
    Known{SYS_unlinkat, "unlinkat", Names::PathIn},
    Known{SYS_write, "write", Names::Descriptor},
    Known{SYS_writev, "writev", Names::Descriptor},
#ifdef SYS_open  // The others exist only on older architectures.
    Known{SYS_link, "link", Names::TwoPaths},
    Known{SYS_lstat, "lstat", Names::Path},
    Known{SYS_mkdir, "mkdir", Names::Path},
    Known{SYS_open, "open", Names::Path},
    Known{SYS_readlink, "readlink", Names::Path},
    Known{SYS_rename, "rename", Names::TwoPaths},
    Known{SYS_stat, "stat", Names::Path},
    Known{SYS_unlink, "unlink", Names::Path},
#endif
};

const Known* find(const StartedCall& call)
{
    const auto* const known = std::find_if(kKnown.begin(), kKnown.end(), [&](const Known& one) {
        return one.number == static_cast<long>(call.number);
    });
    return known == kKnown.end() ? nullptr : known;
}

std::string textAt(pid_t process, std::uint64_t address)
{
    // Reading stops at the end of a page, because the next one may not exist.
    constexpr std::uint64_t kPage = 4096;
    std::string text;
    while (text.size() < PATH_MAX) {
        std::array<char, kPage> piece{};
        iovec own{piece.data(), kPage - address % kPage};
        // NOLINTNEXTLINE(performance-no-int-to-ptr): an address in the other process
        iovec others{reinterpret_cast<void*>(address), own.iov_len};
        if (process_vm_readv(process, &own, 1, &others, 1, 0) <= 0) {
            break;
        }
        const auto size = strnlen(piece.data(), own.iov_len);
        text.append(piece.data(), size);
        if (size < own.iov_len) {
            break;
        }
        address += own.iov_len;
    }
    return text;
}

std::string pathOf(pid_t process, std::uint64_t descriptor)
{
    const auto link = "/proc/" + std::to_string(process) + "/fd/" + std::to_string(descriptor);
    std::array<char, PATH_MAX> path{};
    const auto size = readlink(link.c_str(), path.data(), path.size());
    return {path.data(), static_cast<std::size_t>(std::max<ssize_t>(size, 0))};
}

}  // namespace

std::string nameOf(const StartedCall& call)
{
    const auto* const known = find(call);
    if (known == nullptr) {
        return "call-" + std::to_string(call.number);
    }
    std::string name(known->name);
    const auto has = [&](std::size_t argument, std::uint64_t flags) {
        return (call.arguments.at(argument) & flags) == flags;
    };
    switch (known->number) {
    case SYS_openat:
        return has(2, O_TMPFILE) ? "openat-nameless" : name;
    case SYS_renameat2:
        return has(4, RENAME_EXCHANGE)    ? "renameat2-exchange"
               : has(4, RENAME_NOREPLACE) ? "renameat2-noreplace"
                                          : name;
    case SYS_fcntl:
        return call.arguments[1] == F_SETLEASE   ? "fcntl-setlease"
               : call.arguments[1] == F_GETLEASE ? "fcntl-getlease"
                                                 : name;
    default:
        return name;
    }
}

std::string targetOf(pid_t process, const StartedCall& call)
{
    const auto* const known = find(call);
    if (known == nullptr) {
        return {};
    }
    const auto& arguments = call.arguments;
    switch (known->names) {
    case Names::Nothing:
        return {};
    case Names::Descriptor:
        return pathOf(process, arguments[0]);
    case Names::Path:
        return textAt(process, arguments[0]);
    case Names::PathIn: {
        auto path = textAt(process, arguments[1]);
        return path.empty() ? pathOf(process, arguments[0]) : path;
    }
    case Names::TwoPaths:
        return textAt(process, arguments[0]) + " " + textAt(process, arguments[1]);
    case Names::TwoPathsIn:
        return textAt(process, arguments[1]) + " " + textAt(process, arguments[3]);
    }
    return {};
}

}  // namespace dunmora::test
