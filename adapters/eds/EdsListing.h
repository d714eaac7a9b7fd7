#pragma once

#include "adapters/eds/ContactService.h"
#include "adapters/eds/JoinedCards.h"
#include "adapters/vcard/CardReader.h"
#include "platform/Person.h"
#include "text/TextHash.h"

#include <cstddef>
#include <deque>
#include <memory_resource>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace dunmora {

/// How people's ids are formed: in one book by the service alone, in many books with the book's id
/// in front.
enum class PersonIds { OfOneBook, OfManyBooks };

/// The people of the service's books at one moment, as views into this object.
///
/// Thread: as a standard container.
class EdsListing final {
public:
    /// A person's book, and the person's entry there.
    struct Entry {
        /// The position of the book in the order in which the books were added.
        std::size_t book;
        std::string_view contact;
        std::string_view card;
    };

    explicit EdsListing(PersonIds ids) : ids_(ids) {}
    ~EdsListing() = default;
    EdsListing(const EdsListing&) = delete;
    EdsListing& operator=(const EdsListing&) = delete;

    /// Adds a book's people. Returns how many entries were skipped because they cannot be read or
    /// have no unique id.
    std::size_t add(const ServiceBook& book, std::vector<ContactText> contacts);

    const std::vector<ServiceBook>& books() const { return books_; }
    const PersonSource& source(const Entry& entry) const { return sources_[entry.book]; }
    std::span<const Person> people() const { return people_; }
    /// The entry of a person of the listing, by its position.
    const Entry& entry(std::size_t position) const { return entries_[position]; }

    /// The position of a person, given by reference. Errors: PlatformError for anybody else.
    std::size_t positionOf(const Person& person) const;
    /// The entry with this id; nullptr where there is none.
    const Entry* find(std::string_view uid) const;

private:
    std::string_view idOf(const ServiceBook& book, std::string_view contact);

    PersonIds ids_;
    std::vector<ServiceBook> books_;
    // One for each book; the people refer to these.
    std::deque<PersonSource> sources_;
    // The people's texts are views into these: the books' cards and uids, the reader, the ids that
    // are formed here.
    std::deque<JoinedCards> cards_;
    std::deque<std::vector<std::string>> uids_;
    CardReader reader_;
    std::pmr::monotonic_buffer_resource memory_;
    // The people, and the entry of each.
    std::vector<Person> people_;
    std::vector<Entry> entries_;
    std::unordered_map<std::string_view, std::size_t, TextHash> positions_;
};

}  // namespace dunmora
