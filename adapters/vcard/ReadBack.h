#pragma once

#include "adapters/vcard/RemainingCard.h"

#include <filesystem>
#include <vector>

namespace dunmora {

class FileReplacement;

/// Whether the new file, read back, is what has been written, and, read like any other, holds
/// exactly these cards and people, in this order. `name` is for errors.
/// Thread: one at a time; blocks on the disk. Errors: PlatformError when it cannot be read.
bool isReadBack(const std::filesystem::path& name, const FileReplacement& replacement,
                const std::vector<RemainingCard>& expected);

/// Throws unless `isReadBack`.
///
/// This is the last check before a file is replaced: whatever the reason, a deletion must not
/// change how the others are read. Thread: one at a time; blocks on the disk.
/// Errors: PlatformError about the file `name`.
void checkReadBack(const std::filesystem::path& name, const FileReplacement& replacement,
                   const std::vector<RemainingCard>& expected);

}  // namespace dunmora
