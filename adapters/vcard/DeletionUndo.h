#pragma once

#include "adapters/vcard/Deletion.h"
#include "platform/CardRestorer.h"

namespace dunmora {

/// Puts back what a deletion has removed, in all of its files or in none, and forgets it in
/// `deletion`, which must have copied it from the reading.
///
/// A file that nobody has changed since gets its bytes back where they were; otherwise the cards
/// that it lacks are added at its end. A file that was removed gets its names back, those that
/// nobody has taken, or a new one.
///
/// Thread: any; blocks on the disk. Errors: PlatformError when nothing was changed.
Restoration undo(Deletion& deletion);

}  // namespace dunmora
