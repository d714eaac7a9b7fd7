#pragma once

#include <cstddef>
#include <functional>

namespace dunmora {

/// The number of processors that this process may use, at least 1.
std::size_t processors();

/// Runs `task` once for every number from 0 to `count` - 1, on at most `threads` threads: the
/// caller's and others that end before this returns. Each thread takes the next number as soon as
/// it is free, so tasks start in the order of their numbers. When the system refuses a thread, the
/// others do all the work.
///
/// What the tasks have written, the caller may read afterwards.
/// Thread: any; returns when every task that started has ended.
/// Errors: after a task throws, no further one starts. Of all that were thrown, the exception of
/// the lowest number is rethrown: it is the one that a loop would have thrown.
void runSideBySide(std::size_t count, std::size_t threads,
                   const std::function<void(std::size_t)>& task);

}  // namespace dunmora
