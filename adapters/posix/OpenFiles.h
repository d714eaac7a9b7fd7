#pragma once

#include <cstddef>

namespace dunmora {

/// Whether a prepared change keeps its files open, and so locked, until it has been made.
enum class OpenFiles {
    Keep,
    /// For more files than the process may have open. They are locked by a `LockedFolder` only, and
    /// new files have temporary names.
    Close,
};

/// What is possible with so many changes at once. Raises the limit of open files if that helps.
/// Thread: any.
OpenFiles openFilesFor(std::size_t changes);

}  // namespace dunmora
