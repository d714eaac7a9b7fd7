#pragma once

#include "platform/CardRestorer.h"

#include <cstdint>
#include <filesystem>
#include <string_view>

namespace dunmora {

class AddedCards;

/// Names what a backup, whose people are `cards`, contains besides them.
/// Thread: any. Errors: none.
void noteWhatIsNotRestored(const AddedCards& cards, Restoration& result);

/// Implements `CardRestorer::restore` for a file, at its end, and for a folder, as one new file for
/// each card. Books and backups of more than `largest` bytes are refused.
/// Thread: any; blocks on the disk. Errors: PlatformError when nothing was changed.
Restoration restoreBackup(const std::filesystem::path& book, std::uintmax_t largest,
                          std::string_view backup, CardRestorer::Mode mode);

}  // namespace dunmora
