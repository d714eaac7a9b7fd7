#pragma once

#include "adapters/eds/ContactService.h"
#include "adapters/vcard/CardReader.h"
#include "platform/Person.h"

#include <cstddef>
#include <memory_resource>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace dunmora {

/// How the ids of people are made: those of one book alone are the service's own, those of several
/// begin with their book's.
enum class PersonIds { OfOneBook, OfManyBooks };

/// What the service's books held at one moment, as people.
///
/// Thread: one at a time. The people are views into the listing.
class EdsListing final {
public:
    /// Where a person stands and what was read of them.
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

    /// Takes a book's people over. Returns how many entries are no person's that can be known by
    /// an id: unreadable ones, and such as have no id of their own.
    std::size_t add(const ServiceBook& book, std::vector<ContactText> contacts);

    const std::vector<ServiceBook>& books() const { return books_; }
    std::span<const Person> people() const { return cards_.people; }
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
    // What the people's texts are views into: each book's own, the reader's, the ids made here.
    std::vector<std::vector<ContactText>> texts_;
    CardReader reader_;
    std::pmr::monotonic_buffer_resource memory_;
    // The people, and beside each the entry.
    CardReader::Cards cards_;
    std::vector<Entry> entries_;
    std::unordered_map<std::string_view, std::size_t> positions_;
};

}  // namespace dunmora
