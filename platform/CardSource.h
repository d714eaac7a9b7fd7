#pragma once

#include "platform/Person.h"
#include "platform/PersonCard.h"

#include <array>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace dunmora {

/// A card as its book stores it, to be compared with another one of the book without reading
/// either.
struct StoredCard {
    /// Pieces of the card. Two cards with equal parts are in the same lists, and hold the same
    /// properties in the same order, of which some name the person, except that the values of UID
    /// and REV may differ. Valid until the next `AddressBook::readPeople`.
    std::array<std::string_view, 3> parts;
    /// The book or file that the card is from; never null.
    const PersonSource* source;
};

/// The whole cards of an address book's people: what a backup is written from, and what a user
/// reviews besides the contact fields.
///
/// Thread: as the `AddressBook` that it belongs to: any, one call at a time to the two of them. A
/// call may block on a disk or a service.
class CardSource {
public:
    virtual ~CardSource() = default;

    /// Returns the vCards of these people of the book's last listing, in the order given, as the
    /// content of one file. Each card is byte for byte what the book holds; a card without a line
    /// end gets one. UTF-16 begins with a byte-order mark. Returns an empty text for no people.
    /// Errors: PlatformError when a person is not in the last listing, when a card can no longer be
    /// read, or when the cards do not fit into one text (some are UTF-16 and others are not).
    virtual std::string cards(std::span<const Person* const> people) const = 0;

    /// Everything that the book held of this person of the last `AddressBook::readPeople`, the
    /// reading that the user reviews; `people` and `save` do not change that. Nothing for anybody
    /// else, and when the card cannot be read. Takes some microseconds where the book is in memory.
    /// Errors: PlatformError when the book cannot be reached.
    virtual std::optional<PersonCard> card(std::string_view uid) const = 0;

    /// The same card as it is stored: much faster than `card`, which returns the same each time
    /// while there is a stored one. Nothing for a card that cannot be compared in this way, and in
    /// a book that has no such cards in memory. Errors: none.
    virtual std::optional<StoredCard> storedCard(std::string_view /*uid*/) const
    {
        return std::nullopt;
    }
};

}  // namespace dunmora
