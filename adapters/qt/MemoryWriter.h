#pragma once

#include "platform/WindowMemory.h"

#include <memory>
#include <string>

namespace dunmora {

/// Stores what a window remembers without making the window wait for the disk. A disk that hangs
/// delays the end of the program by about a second (see `ShutdownInhibitor`). What has not been
/// stored by then is lost; the file stays whole.
///
/// Thread: one at a time. Errors: none.
class MemoryWriter final {
public:
    /// Stores texts of the window with this name.
    MemoryWriter(std::shared_ptr<WindowMemory> memory, std::string window);

    /// Stores these texts soon, on a thread of its own and in the order of the calls.
    void write(const WindowMemory::Texts& texts);

private:
    class Queue;

    // The thread keeps it, too.
    std::shared_ptr<Queue> queue_;
};

}  // namespace dunmora
