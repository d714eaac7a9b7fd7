#pragma once

#include "platform/Person.h"
#include "platform/PersonCard.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

/// In what the cards of several people differ, as their book has found without decoding them.
struct CardDifferences {
    /// The names, in upper case and each once, of the properties in which the cards differ, except
    /// that UID and REV may be missing. The properties of any other name are the same in all of the
    /// cards, but their order, and how often a card repeats one, may differ.
    std::vector<std::string> names;
    /// The book or file that each of the cards is from; none is null. Valid until the next
    /// `AddressBook::readPeople`.
    std::vector<const PersonSource*> sources;
};

/// The whole cards of an address book's people: what a backup is written from, and what a user
/// reviews besides the contact fields.
///
/// Thread: as the `AddressBook` that it belongs to: any, one call at a time to the two of them. A
/// call may block on a disk or a service. Only `compareStored` and `propertiesNamed` may be called
/// by several threads at once, while nothing else is.
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

    /// Compares the cards of these people as they are stored, which is much faster than to read
    /// them. Replaces `differences` and returns true when these are certain, each of the cards has
    /// a name (N or FN) that shows something, and all of them are in the same lists. `card` then
    /// returns the same each time. Returns false for cards that cannot be compared in this way, and
    /// in a book that has none in memory. Errors: none.
    virtual bool compareStored(std::span<const std::string> /*uids*/,
                               CardDifferences& /*differences*/) const
    {
        return false;
    }

    /// Those properties of a card that have one of these names, in upper case; the same, in the
    /// same order, as among those of `card`. Nothing for a card that `compareStored` cannot
    /// compare. Errors: none.
    virtual std::optional<std::vector<CardProperty>>
    propertiesNamed(std::string_view /*uid*/, std::span<const std::string> /*names*/) const
    {
        return std::nullopt;
    }
};

}  // namespace dunmora
