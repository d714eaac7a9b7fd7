#pragma once

#include "adapters/eds/ContactService.h"
#include "adapters/vcard/CardReader.h"
#include "platform/Person.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

/// The cards of a book's contacts in one text, which takes much less time to read than each card
/// alone.
///
/// Thread: one at a time.
class JoinedCards final {
public:
    /// What a contact's card holds.
    struct Content {
        /// Nothing unless the card holds exactly one person.
        std::optional<Person> person;
        bool hasList = false;
    };

    explicit JoinedCards(const std::vector<ContactText>& contacts);
    ~JoinedCards() = default;
    JoinedCards(const JoinedCards&) = delete;
    JoinedCards& operator=(const JoinedCards&) = delete;

    /// The card of a contact, by its position, as a view into this object.
    std::string_view card(std::size_t contact) const;

    /// Reads each contact's card as if it were read alone. The people hold views into this object
    /// and into the reader.
    std::vector<Content> read(CardReader& reader) const;

private:
    struct Place {
        std::size_t begin;
        std::size_t size;
        /// Where the next card begins.
        std::size_t next;
    };

    std::optional<std::vector<Content>> readTogether(CardReader& reader) const;
    std::vector<Content> readOneByOne(CardReader& reader) const;

    std::string text_;
    std::vector<Place> places_;
};

}  // namespace dunmora
