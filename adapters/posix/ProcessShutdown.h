#pragma once

#include <optional>

namespace dunmora {

/// Delays an orderly exit of the process while it exists, so that a change of several files
/// completes or never starts. The exit waits until nothing has advanced for a second, because a
/// hung disk must not keep the program alive. Once the exit has started, constructing one blocks
/// forever. Nesting is allowed.
///
/// Thread: any; construct and destroy it on the same thread. Errors: none.
class ShutdownInhibitor final {
public:
    ShutdownInhibitor();
    ~ShutdownInhibitor();
    ShutdownInhibitor(const ShutdownInhibitor&) = delete;
    ShutdownInhibitor& operator=(const ShutdownInhibitor&) = delete;
    ShutdownInhibitor(ShutdownInhibitor&&) = delete;
    ShutdownInhibitor& operator=(ShutdownInhibitor&&) = delete;

    /// Reports that the work of an inhibitor has advanced, so that the exit waits a second longer.
    static void reportProgress();
};

/// Exits with this status: waits until no `ShutdownInhibitor` is left and, unless that times out,
/// removes every `UnfinishedFile`. Runs no destructors and no exit handlers, because other threads
/// are still running.
/// Thread: any that holds no `ShutdownInhibitor`. Errors: none.
[[noreturn]] void exitProcess(int status);

/// Makes SIGTERM, SIGINT and SIGHUP exit the process as `exitProcess` does: with this status, or
/// without one by the signal itself, as a shell expects. Signals that were ignored when the process
/// started stay ignored.
/// Thread: the main thread, once. Errors: std::system_error when the system provides no pipe or no
/// thread.
void exitOnSignals(std::optional<int> status);

}  // namespace dunmora
