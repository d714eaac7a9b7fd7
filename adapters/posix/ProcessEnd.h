#pragma once

#include <optional>

namespace dunmora {

/// Work on files that an end of the process in order waits for, so that it is done wholly or not at
/// all. It waits for a second at most: such work takes moments, unless a disk hangs. Once the end
/// has come, no thread gets past the making of one. They nest.
///
/// Thread: any; made and destroyed on the same. Errors: none.
class UnbrokenWork final {
public:
    UnbrokenWork();
    ~UnbrokenWork();
    UnbrokenWork(const UnbrokenWork&) = delete;
    UnbrokenWork& operator=(const UnbrokenWork&) = delete;
    UnbrokenWork(UnbrokenWork&&) = delete;
    UnbrokenWork& operator=(UnbrokenWork&&) = delete;
};

/// Ends the process in order: waits for unbroken work, takes every `UnfinishedFile` away when that
/// has ended in time, and leaves all else as it is, because other threads may be in the middle of
/// anything.
/// Thread: any, not in unbroken work. Errors: none.
[[noreturn]] void endProcess(int status);

/// Lets SIGTERM, SIGINT and SIGHUP end the process in order: with this status, or without one by
/// the signal itself, as the shell expects of a program in a terminal. A signal that the process
/// was started to ignore stays ignored.
/// Thread: the main thread, once. Errors: std::system_error when the system gives no pipe or no
/// thread.
void endOnSignals(std::optional<int> status);

}  // namespace dunmora
