#pragma once

#include "platform/PersonCard.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace dunmora {

/// How a property of a copy compares with the copies that are kept.
enum class CardVerdict {
    /// There is no other copy to compare with.
    None,
    /// A kept copy has it, too.
    Same,
    /// A kept copy has another value of the same kind, of which a person has only one.
    Different,
    /// No kept copy has anything like it.
    OnlyHere,
};

/// A property of a card for the user. Its texts are those of the address book, so they are not safe
/// to display yet; a value may have several lines.
struct CardLine {
    /// "E-mail (work)".
    std::string title;
    /// "ann@example.org"; for a binary value its type and size: "image/jpeg, 12 KB".
    std::string value;
    /// The bytes of a photo or a logo, for a picture. Empty for everything else.
    std::string picture;
    CardVerdict verdict = CardVerdict::None;
    /// The kept copy's value when the verdict is Different; otherwise empty.
    std::string keptValue;
    /// The property's name in the standard: "EMAIL"; "MEMBER" for a list that the person is in.
    std::string property;
};

/// Something that only one copy holds.
struct OnlyHere {
    /// The property's name in the standard: "EMAIL"; "MEMBER" for a list that the person is in.
    std::string property;
    /// As `CardLine::value`.
    std::string value;
};

/// The lines of a card, in its order, without bookkeeping and empty values, compared with the cards
/// that are kept; without verdicts when there are none of these. Thread: any. Errors: none.
std::vector<CardLine> cardLines(const PersonCard& card, std::span<const PersonCard> kept);

/// The same when it is known which of the compared properties (`CardKeys`) a kept card has.
/// `kept` may then be only some of the kept cards.
std::vector<CardLine> cardLines(const PersonCard& card, std::span<const PersonCard> kept,
                                const std::function<bool(std::size_t property)>& isKept);

/// "E-mail ann@example.org, note, photo" of what only one copy holds, in one line that is safe to
/// display and not long.
std::string enumeratedText(std::span<const OnlyHere> properties);

}  // namespace dunmora
