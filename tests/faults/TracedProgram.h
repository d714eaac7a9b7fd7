#pragma once

#include "tests/faults/SystemCallName.h"

#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace dunmora::test {

/// A program whose first thread is stopped before each of its system calls (ptrace), so that the
/// calls can be changed. It is killed together with its tracer.
class TracedProgram final {
public:
    /// Starts the program. Errors: std::runtime_error; `canTrace` is false where processes cannot
    /// be traced or their calls cannot be changed.
    explicit TracedProgram(const std::vector<std::string>& command);

    bool canTrace() const { return canTrace_; }
    pid_t process() const { return process_; }

    /// Continues to the next system call; nullopt when the program has ended.
    std::optional<StartedCall> nextCall();

    /// Changes the number of bytes that the current call, a read or a write, may transfer.
    void setSize(const StartedCall& call, std::uint64_t size) const;
    /// Continues to the end of the current call, which does nothing and fails.
    void failCall(int error);
    /// Continues to the end of the current call; nullopt when the program has ended in it.
    std::optional<long> finishCall();
    /// Changes the result of the call that has just been finished.
    void setError(int error) const;

    void kill();

    /// "exit 0" or "signal 9", after the end.
    const std::string& end() const { return end_; }

private:
    bool continueToStop();

    pid_t process_ = -1;
    bool canTrace_ = false;
    bool isInCall_ = false;
    std::string end_;
};

}  // namespace dunmora::test
