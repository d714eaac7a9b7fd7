#include "tests/adapters/posix/FailingCalls.h"

#include <cerrno>
#include <cstdarg>
#include <cstddef>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>

namespace dunmora::test {

namespace {

FailingCalls*& current()
{
    static FailingCalls* object = nullptr;
    return object;
}

bool fails(Call call)
{
    return current() != nullptr && current()->fails(call);
}

}  // namespace

FailingCalls::FailingCalls(Call call, int error, int failures, int successes)
    : call_(call), error_(error), failures_(failures), successes_(successes)
{
    current() = this;
}

FailingCalls::~FailingCalls()
{
    current() = nullptr;
}

bool FailingCalls::fails(Call call)
{
    const std::lock_guard lock(mutex_);
    if (call != call_ || --successes_ >= 0 || failed_ == failures_) {
        return false;
    }
    ++failed_;
    errno = error_;
    return true;
}

}  // namespace dunmora::test

// The linker gives these names to the functions that it redirects.
// NOLINTBEGIN(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,readability-identifier-naming)
using dunmora::test::Call;
using dunmora::test::fails;

extern "C" {

ssize_t __real_flistxattr(int file, char* names, std::size_t size);
int __real_fremovexattr(int file, const char* name);
int __real_fstat(int file, struct stat* status);
int __real_fsync(int file);
int __real_flock(int file, int operation);
int __real_open(const char* path, int flags, ...);
ssize_t __real_pread(int file, void* place, std::size_t size, off_t position);

ssize_t __wrap_flistxattr(int file, char* names, std::size_t size)
{
    return fails(size == 0 ? Call::CountAttributes : Call::ListAttributes)
               ? -1
               : __real_flistxattr(file, names, size);
}

int __wrap_fremovexattr(int file, const char* name)
{
    return fails(Call::RemoveAttribute) ? -1 : __real_fremovexattr(file, name);
}

int __wrap_fstat(int file, struct stat* status)
{
    return fails(Call::Status) ? -1 : __real_fstat(file, status);
}

int __wrap_fsync(int file)
{
    return fails(Call::Sync) ? -1 : __real_fsync(file);
}

int __wrap_flock(int file, int operation)
{
    return fails(Call::Lock) ? -1 : __real_flock(file, operation);
}

int __wrap_open(const char* path, int flags, ...)
{
    std::va_list arguments;
    va_start(arguments, flags);
    // Bits of O_TMPFILE also mean O_DIRECTORY.
    const bool hasMode = (flags & O_CREAT) != 0 || (flags & O_TMPFILE) == O_TMPFILE;
    // NOLINTNEXTLINE(clang-analyzer-valist.Uninitialized): the checker does not see va_start
    const auto mode = hasMode ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return fails(Call::Open) ? -1 : __real_open(path, flags, mode);
}

ssize_t __wrap_pread(int file, void* place, std::size_t size, off_t position)
{
    return fails(Call::ReadAt) ? -1 : __real_pread(file, place, size, position);
}
}
// NOLINTEND(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp,readability-identifier-naming)
