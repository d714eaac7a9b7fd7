#pragma once

#include "platform/Person.h"

#include <string_view>

namespace dunmora {

/// A card that a change leaves in its file, or adds to it.
struct RemainingCard {
    /// The bytes of the card, without the line end after it.
    std::string_view bytes;
    const Person* person;

    /// Whether a card that was read back is this one and is read as the same person. The uids are
    /// not compared, because those of equal cards depend on the cards before them.
    /// Thread: any. Errors: none.
    bool isReadAs(std::string_view readBytes, const Person& readPerson) const;
};

}  // namespace dunmora
