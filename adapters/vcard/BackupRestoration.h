#pragma once

#include "adapters/vcard/Deletion.h"
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
/// each card. Books and backups of more than `largest` bytes are refused, and so is a file without
/// cards, unless it is one of the `remainders` of deletions made since the book was opened.
/// Thread: any; blocks on the disk. Errors: PlatformError when nothing was changed.
Restoration restoreBackup(const std::filesystem::path& book, std::uintmax_t largest,
                          const Remainders& remainders, std::string_view backup,
                          CardRestorer::Mode mode);

}  // namespace dunmora
