#pragma once

#include <optional>
#include <string_view>

namespace dunmora {

/// The UID of a service's card that is plainly that of a person, as libebook would return it.
/// Nullopt for a card that has to be parsed to know: a list, a card without a UID, and any card
/// with something unusual where the UID is or where lines begin and end.
///
/// Nearly every card is plain, and libebook takes longer to parse one than for all else it does
/// with it. Thread: any. Errors: none.
std::optional<std::string_view> plainUid(std::string_view card);

}  // namespace dunmora
