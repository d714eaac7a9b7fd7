#pragma once

#include "platform/Person.h"

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace dunmora {

/// What the last reading of an address book left out or found odd.
struct ReadingNotes {
    /// How many people's entries could not be read. They stay in the book as they are, and a remark
    /// names them.
    std::size_t cardsSkipped = 0;
    /// Sentences for the user, such as which cards were skipped, or which book was left out and
    /// why. Empty when there is nothing to report.
    std::vector<std::string> remarks;
    /// The names for the user of the books that the people come from, for an address book of books
    /// with names. Empty for files.
    std::vector<std::string> books = {};
};

/// The user's address book: lists people, collects removals, and writes them all at once.
///
/// A person is passed back as a reference into the last listing. The views of a listing stay valid
/// until the next one, across a `save`.
///
/// Thread: any, one call at a time. Every call may block on a disk or a service.
/// Errors: every call but `notes` throws PlatformError with the book's name and the reason. The
/// book on disk is then unchanged unless the text says what was done.
class AddressBook {
public:
    virtual ~AddressBook() = default;

    /// Reads the book again and lists everyone in it, for the user to review. Forgets the removals
    /// that were not saved.
    virtual std::span<const Person> readPeople() = 0;

    /// Lists the people who can be removed now. A live book is listed again; a book of files
    /// returns the people of its last reading (reading first if there is none) without those
    /// removed since. Forgets the removals that were not saved.
    virtual std::span<const Person> people() = 0;

    /// Throws when one of these people of the last reading cannot be removed because the place
    /// where the person is kept is read-only, as far as that is known without reading or locking
    /// anything. `save` may fail nevertheless.
    virtual void checkWritable(std::span<const std::string> uids) const = 0;

    /// Marks a person of the last listing as removed; nothing is written before `save`.
    /// Errors: PlatformError when the person is not in the last listing or cannot be removed. All
    /// removals that were not saved are then forgotten.
    virtual void removeRecord(const Person& person) = 0;

    /// Writes the book once, without the people removed since the last listing. Writes nothing if
    /// there are none. No removal is pending afterwards, whether it returns or throws.
    virtual void save() = 0;

    /// What the last reading left out or found odd.
    virtual ReadingNotes notes() const = 0;
};

}  // namespace dunmora
