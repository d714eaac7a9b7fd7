#pragma once

#include "platform/PersonCard.h"
#include "programs/dunmora-cli/JsonText.h"

#include <span>
#include <string>
#include <string_view>

namespace dunmora {

/// A person's card, and the uid by which the user asked for it.
struct ShownCard {
    std::string_view uid;
    PersonCard card;
};

// What the terminal program prints of whole cards. The texts without "Json" are safe to display.
// Thread: any. Errors: none.

/// Everything that the cards hold: a heading for each, then one line for each property.
std::string cardsText(std::span<const ShownCard> cards);
/// The same as one JSON document on one line, with a line end; binary values are base64.
std::string cardsJson(std::string_view addressBook, std::span<const ShownCard> cards,
                      JsonCharacters characters);

/// What only the one ("-") and only the other card ("+") holds, or that there is no difference.
std::string differencesText(const ShownCard& one, const ShownCard& other);
std::string differencesJson(std::string_view addressBook, const ShownCard& one,
                            const ShownCard& other, JsonCharacters characters);

}  // namespace dunmora
