#pragma once

#include "adapters/posix/Pieces.h"
#include "adapters/vcard/CardFile.h"
#include "adapters/vcard/CardReader.h"
#include "adapters/vcard/Deletion.h"

#include <string>
#include <string_view>

namespace dunmora {

/// Whether this is not a file of vCards: it is not blank, and no line of it begins a card by the
/// rules of `CardReader`. A card that breaks off makes it one all the same. `cards` has been read
/// from this file; its `people` may be from others, too.
/// Thread: any. Errors: none.
bool isForeign(const CardFile& file, const CardReader::Cards& cards);

/// The same for a file that has not been read yet.
bool isForeign(const CardFile& file);
bool isForeign(const Pieces& content);

/// Refuses to add cards to a foreign file, unless a deletion has left it like that: one of these
/// `remainders`, or one of an earlier run.
/// Thread: any; blocks on the disk. Errors: PlatformError when it is refused.
void checkTakesCards(const CardFile& file, const Remainders& remainders);

/// What a foreign file is, by its content: "a CSV file, not a vCard file", the same for LDIF and
/// zip, and "not a vCard file" for anything else.
/// Thread: any. Errors: none.
std::string describeForeign(std::string_view bytes);

}  // namespace dunmora
