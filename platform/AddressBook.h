#pragma once

#include "platform/Person.h"

#include <cstddef>
#include <filesystem>
#include <span>
#include <string>
#include <vector>

namespace dunmora {

/// What a book has to say about its last reading.
struct ReadingNotes {
    /// Entries that are people's but could not be read; they stay in the book as they are. A remark
    /// tells which.
    std::size_t cardsSkipped = 0;
    /// Sentences for the user, such as which cards were skipped or which book was left out and why;
    /// empty when all went well.
    std::vector<std::string> remarks;
};

/// The user's address book: an ordered list of people, removals, and one write of all removals.
///
/// Thread: any, one call at a time; every call may block on a disk or a service.
/// Errors: PlatformError from every call but `notes`, with the book's name and the reason; the book
/// on disk is then as it was unless the text says what was done.
class AddressBook {
public:
    virtual ~AddressBook() = default;

    /// Reads the book anew and lists everyone in it. This is the reading that the user reviews.
    /// Removals that were not saved are forgotten. The views stay valid until the next
    /// `readPeople`.
    virtual std::span<const Person> readPeople() = 0;

    /// Lists who can be removed now: a live book lists itself again, a book of files gives the
    /// people of its last reading (reading first when there was none) less those removed since.
    /// Removals that were not saved are forgotten. The views stay valid until the next listing.
    virtual std::span<const Person> people() = 0;

    /// Marks a person of the last listing as removed; nothing is written before `save`.
    /// When it throws, all removals that were not saved are forgotten.
    virtual void removeRecord(const Person& person) = 0;

    /// Writes the book once without the people removed since the last listing; with none removed it
    /// writes nothing. Whether it returns or throws, no removal is pending afterwards.
    virtual void save() = 0;

    /// Makes sure that `backUp` can put these people of the last listing into one file; nothing is
    /// written. Errors: PlatformError when it cannot.
    virtual void checkBackUp(std::span<const Person* const> people) const = 0;

    /// Writes these people of the last listing, in the order given, as vCards to a new file and
    /// brings it to the disk before it returns. A file that exists is left alone and is an error.
    virtual void backUp(std::span<const Person* const> people,
                        const std::filesystem::path& file) = 0;

    /// What the last reading has to tell the user.
    virtual ReadingNotes notes() const = 0;
};

}  // namespace dunmora
