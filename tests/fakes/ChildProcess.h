#pragma once

#include <functional>
#include <string>

namespace dunmora::test {

/// Runs the body in a child process, which may drop privileges, set limits or move mounts, and
/// returns its result. An exception is returned as "thrown: " and its text.
std::string inChild(const std::function<std::string()>& body);

/// The moment right before or right after a system call of a child.
struct SystemCall {
    enum class Moment { Before, After };

    /// As in <sys/syscall.h>.
    long number;
    Moment moment;
};

enum class Fate { Continue, Kill, Terminate };

/// How a traced child ended.
enum class End { Ended, Killed, CannotBeTraced };

/// Runs the body in a child and stops it before and after each system call. `atCall` decides
/// whether the child continues, is killed at once, or gets SIGTERM. After SIGTERM it continues
/// slowly, so that its other thread, which is not traced, has time to end it. Runs nothing where
/// processes cannot be traced.
End traceChild(const std::function<void()>& body, const std::function<Fate(SystemCall)>& atCall);

}  // namespace dunmora::test
