#pragma once

#include "base/ContactFields.h"
#include "base/NotificationCenter.h"
#include "engine/ContactGroups.h"
#include "engine/ContactRecord.h"
#include "engine/OrderedDictionary.h"

#include <cstddef>
#include <cstdint>
#include <mutex>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

struct Person;

/// The contact engine: everyone in the address book, the groups of people whose match keys are
/// equal, and the rows of the review.
///
/// Thread: one job (`load`, `findDupes`, `deleteContacts`) at a time, on any thread; the
/// collections are read and marked by that job, or by the main thread while none runs. A job
/// reports through the default notification center, on its own thread, with the engine as the
/// sender.
class ContactsParser final {
public:
    /// uid to record, in the address book's order.
    using Contacts = OrderedDictionary<ContactRecord>;
    using Uids = std::vector<std::string>;
    /// Match key to the uids of the people who have it.
    using Groups = ContactGroups;

    ContactsParser() = default;
    ~ContactsParser() = default;
    ContactsParser(const ContactsParser&) = delete;
    ContactsParser& operator=(const ContactsParser&) = delete;

    /// The one engine of the program, created on first use and never destroyed.
    static ContactsParser& parser();

    /// Everyone read by the last `load`: the live collection, whose records carry the check marks.
    Contacts& contacts() { return contacts_; }
    const Contacts& contacts() const { return contacts_; }

    /// The review's rows: the uids of every group of two or more, one group after the other.
    const Uids& duplicates() const { return duplicates_; }

    /// The record of the person in this row: the one that `contacts` has under the row's uid, many
    /// times faster. Null for a row that does not exist, and for a person who is not known.
    ContactRecord* recordInRow(std::size_t row);
    const ContactRecord* recordInRow(std::size_t row) const;

    /// Where the last search found the person in this row, which must exist: the position of a
    /// member of one of the `contactGroups`.
    std::size_t positionInRow(std::size_t row) const { return rowPositions_[row]; }

    /// The groups of the last search, groups of one included; the rows are the groups of two or
    /// more, in this order. A deletion leaves the groups as they are: they still list the people it
    /// removed.
    const Groups& contactGroups() const { return contactGroups_; }

    /// The fields by which the last search compared. The preferences may have changed since.
    const MatchFieldChoice& searchedFields() const { return searchedFields_; }

    /// Called around `load` and `findDupes`, and empty: only deletions exclude each other.
    void lock() {}
    void unlock() {}

    /// Empties the rows and the groups; the people stay.
    void reset();

    /// Reads everyone in the address book into new records. Always true.
    /// Errors: PlatformError when the book cannot be read; there are then no people, no rows and no
    /// groups, and "msgFinished" is not posted.
    bool load();

    /// Groups the people by match key, lists the groups of two or more as rows and proposes which
    /// copies to delete.
    /// Errors: only what a notification handler throws; there are then neither rows nor groups.
    void findDupes();

    /// Checks everyone in each group of two or more except the first who has a phone number. Never
    /// removes a mark.
    void markDeletedContacts();

    /// Removes the people with these uids from the address book, saves it once, and forgets them.
    /// Errors: PlatformError when the book could not be listed or changed; "msgFinished" is not
    /// posted. The engine may already have forgotten people who are still in the book.
    void deleteContacts(const Uids& uids);

    /// The text whose equality makes two people the same: the value of every field that the
    /// preferences choose, exactly as stored, each followed by "-".
    std::string keyForContact(const ContactRecord& contact) const;

private:
    /// A person to remove from the address book, with the hash of the uid.
    struct Removal {
        const Person* person;
        std::uint64_t hash;
    };

    void postMessage(std::string_view text);
    void postProgress(const Payload& progress);
    void postFinished(std::string_view job);

    /// The people of the listing who have one of these uids.
    static std::vector<Removal> removalsOf(std::span<const Person> people, const Uids& uids);

    /// Where `contacts_` has the person with this uid, whom the last search found at this position;
    /// `kNowhere` if the person is not known any more.
    std::size_t positionNow(std::size_t position, std::string_view uid) const;

    /// Removes these people from `contacts_` and from the rows.
    void forget(std::span<const Removal> removals);

    Contacts contacts_;
    Uids duplicates_;
    // By row: where `contacts_` had the person during the search.
    std::vector<std::uint32_t> rowPositions_;
    Groups contactGroups_;
    MatchFieldChoice searchedFields_;
    // Never locked.
    std::mutex syncLock_;
    // Held during a deletion. Recursive, because a handler may enter it again.
    std::recursive_mutex monitor_;
};

}  // namespace dunmora
