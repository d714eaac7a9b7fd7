#pragma once

#include "adapters/posix/FileBytes.h"
#include "adapters/posix/Pieces.h"
#include "platform/Person.h"

#include <filesystem>
#include <string_view>
#include <vector>

namespace dunmora {

/// A card that a deletion leaves in its file.
struct RemainingCard {
    /// The bytes of the card, without the line end after it.
    std::string_view bytes;
    const Person* person;
};

/// Whether a file's content is what has been written, and the file, read like any other, holds
/// exactly these cards and people, in this order. The uids are not compared, because those of equal
/// cards depend on the cards before them. Thread: any. Errors: none.
bool isReadBack(const std::filesystem::path& name, FileBytes content, const Pieces& written,
                const std::vector<RemainingCard>& expected);

/// Whether the content consists of these pieces.
bool consistsOf(std::string_view content, const Pieces& pieces);

/// Throws unless `isReadBack`.
///
/// This is the last check before a file is replaced: whatever the reason, a deletion must not
/// change how the others are read. Thread: any. Errors: PlatformError about the file `name`.
void checkReadBack(const std::filesystem::path& name, FileBytes content, const Pieces& written,
                   const std::vector<RemainingCard>& expected);

}  // namespace dunmora
