#pragma once

#include <functional>
#include <string>

namespace dunmora::test {

/// Runs the body in a process of its own, which may give up rights, set limits or move mounts, and
/// returns what the body returns. What the body throws comes back as "thrown: " and its words.
std::string inChild(const std::function<std::string()>& body);

/// A moment right before or right after a call that a child makes to the system.
struct SystemCall {
    enum class Moment { Before, After };

    /// As in <sys/syscall.h>.
    long number;
    Moment moment;
};

enum class Fate { GoOn, Kill, Terminate };

/// How a traced child ended.
enum class End { Ended, Killed, CannotBeTraced };

/// Runs the body in a child, stops it before and after each call to the system, and asks there
/// whether it goes on, is killed on the spot, or gets SIGTERM. From then on it goes on slowly, so
/// that another thread of it, which is not traced, has the time to end it. Where processes cannot
/// be traced, nothing is run.
End traceChild(const std::function<void()>& body, const std::function<Fate(SystemCall)>& atCall);

}  // namespace dunmora::test
