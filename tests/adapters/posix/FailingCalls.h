#pragma once

#include <mutex>

namespace dunmora::test {

/// The system calls that a `FailingCalls` can make fail. `ListAttributes` asks for the names of a
/// file's extended attributes, `CountAttributes` for their length (flistxattr without a buffer),
/// `ReadAt` reads at a position (pread), `Status` asks for an open file's status.
enum class Call {
    CountAttributes,
    ListAttributes,
    Lock,
    Open,
    ReadAt,
    RemoveAttribute,
    Status,
    Sync,
};

/// While it lives, some calls of one kind fail with an error, as the system would report it. Only
/// calls from the project's own code are counted: the linker redirects them (--wrap).
/// Thread: one at a time creates and destroys the only object; any may make the calls.
class FailingCalls final {
public:
    /// This many calls fail, after this many that do not.
    FailingCalls(Call call, int error, int failures = 1, int successes = 0);
    ~FailingCalls();
    FailingCalls(const FailingCalls&) = delete;
    FailingCalls& operator=(const FailingCalls&) = delete;

    /// How many calls have failed.
    int failed() const
    {
        const std::lock_guard lock(mutex_);
        return failed_;
    }

    /// Whether this call fails; then sets errno.
    bool fails(Call call);

private:
    const Call call_;
    const int error_;
    const int failures_;
    mutable std::mutex mutex_;
    int successes_;
    int failed_ = 0;
};

}  // namespace dunmora::test
