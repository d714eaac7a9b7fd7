#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace dunmora {

/// The kind of a book that the desktop itself stores.
inline constexpr auto kLocalKind = "local";

/// One of the user's address books, as the desktop's service describes it.
struct ServiceBook {
    /// Unique among the books; contains no "/".
    std::string uid;
    std::string name;
    /// Where its people are kept: "local", "carddav", "google", ...
    std::string kind;
};

/// A person's entry, as the service returns it.
struct ContactText {
    std::string uid;
    /// A vCard in UTF-8.
    std::string card;
};

/// The result of reading a book.
struct BookContent {
    /// Why it could not be read, in a sentence without the book's name; empty when it was.
    std::string failure;
    /// Whether it could not be read because no reply came in time.
    bool hasTimedOut = false;
    bool isWritable = false;
    /// How many people one call to `remove` or `add` should name. More than one only where a call
    /// that fails changes nobody.
    std::size_t batchSize = 1;
    /// Lists of people are omitted.
    std::vector<ContactText> people;
};

/// The result of a removal.
struct RemovalResult {
    enum class Outcome {
        Removed,
        /// One of them is not in the book.
        NoSuchPerson,
        /// One of them has changed on the book's server, which has removed nobody.
        Changed,
        /// The book or its server refused.
        Refused,
        /// No reply came in time; the people may still be removed.
        NoReply,
    };

    Outcome outcome = Outcome::Removed;
    /// Why they were not removed, in a sentence without the book's name.
    std::string reason;
};

/// The result of an addition.
struct AdditionResult {
    enum class Outcome {
        Added,
        /// A card with the uid of one of them is in the book; nobody was added.
        Exists,
        /// The book or its server refused.
        Refused,
        /// No reply came in time; the people may still be added.
        NoReply,
    };

    Outcome outcome = Outcome::Added;
    /// Why they were not added, in a sentence without the book's name.
    std::string reason;
};

/// The desktop's service that keeps the user's address books.
///
/// Thread: any, one call at a time. A call may block for up to ten seconds, but the calls that a
/// user waits for in a row (`books` and `read`; `find`, `remove` and `find`; `add` and `find`) take
/// less than fifteen together. Errors: as stated below; all others are in the results.
///
/// A book on a server is read, searched and changed only while the server can be reached.
class ContactService {
public:
    virtual ~ContactService() = default;

    /// Whether the service runs or can be started.
    virtual bool isAvailable() = 0;

    /// The address books that the user has enabled, in an order that stays the same.
    /// Errors: PlatformError when the service cannot be reached.
    virtual std::vector<ServiceBook> books() = 0;

    /// Reads these books, which `books` has listed, in parallel. Returns one result per book.
    virtual std::vector<BookContent> read(const std::vector<std::string>& books) = 0;

    /// Reads those of these people who are in the book, and perhaps others.
    virtual BookContent find(const std::string& book, const std::vector<std::string>& people) = 0;

    virtual RemovalResult remove(const std::string& book,
                                 const std::vector<std::string>& people) = 0;

    /// Adds people to a book that has been read, as these vCards, each with its UID. Replaces
    /// nobody.
    virtual AdditionResult add(const std::string& book, const std::vector<std::string>& cards) = 0;
};

}  // namespace dunmora
