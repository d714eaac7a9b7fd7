#pragma once

#include "adapters/posix/FileBytes.h"
#include "adapters/posix/FileReplacement.h"
#include "adapters/posix/LockedFile.h"
#include "adapters/vcard/AddedCards.h"
#include "adapters/vcard/CardFile.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace dunmora {

/// What is appended to a file to add cards at its end.
struct Appendix {
    /// In one piece, so that it can be read like a file. Kept elsewhere when the file of the cards
    /// has it in one piece, too.
    FileBytes bytes;
    std::size_t people = 0;
    /// Those of the cards that the file's encoding cannot hold. They are not part of it.
    std::vector<const AddedCards::AddedCard*> unsuitable;
};

/// Cards as lines at the end of a file, in the file's encoding: after a line end if it has none.
/// The file of the cards must stay alive.
Appendix appendixTo(const CardFile& file, const AddedCards& cards,
                    const std::vector<const AddedCards::AddedCard*>& added);

/// Prepares the change of a locked file, whose content is `file`, to the same content with the
/// appendix at its end. It has been read back: it holds the same cards as before, and then exactly
/// those that were added. Both must stay alive until the change has been made.
/// Thread: any; blocks on the disk. Errors: PlatformError.
std::unique_ptr<FileReplacement> appended(LockedFile locked, const CardFile& file,
                                          const Appendix& appendix);

}  // namespace dunmora
