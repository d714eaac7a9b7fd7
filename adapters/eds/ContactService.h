#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace dunmora {

/// One of the user's address books, as the desktop's service describes it.
struct ServiceBook {
    /// Which book it is; no two books share it, and it holds no "/".
    std::string uid;
    std::string name;
    /// Where its people are kept: "local", "carddav", "google", ...
    std::string kind;
};

/// A person's entry, as the service gives it.
struct ContactText {
    std::string uid;
    /// A vCard in UTF-8.
    std::string card;
};

/// What an attempt to read a book has given.
struct BookContent {
    /// Why it could not be read, in a sentence without the book's name; empty when it was.
    std::string failure;
    /// Whether it could not be read because nobody answered in time.
    bool isUnanswered = false;
    bool isWritable = false;
    /// How many people `remove` should be asked to take at once. More than one only where a
    /// removal that fails removes nobody.
    std::size_t batchSize = 1;
    /// Lists of people are left out.
    std::vector<ContactText> people;
};

/// How an attempt to remove people has ended.
struct RemovalAnswer {
    enum class Outcome {
        Removed,
        /// Somebody among them is not in the book.
        NoSuchPerson,
        /// Somebody among them has changed on the server behind the book, which has removed nobody.
        Changed,
        /// The book, or the server behind it, would not.
        Refused,
        /// Nobody answered in time; it may happen yet.
        NoAnswer,
    };

    Outcome outcome = Outcome::Removed;
    /// Why not, in a sentence without the book's name.
    std::string reason;
};

/// The desktop's service that keeps the user's address books.
///
/// Thread: any, one call at a time. A call may block for up to ten seconds, but what a user waits
/// for in one go, `books` and then `read`, or `find`, `remove` and `find` again, takes less than
/// fifteen together. Errors: what is said below; whatever else goes wrong is in the answers.
///
/// People in a book that a server keeps are read, found and removed only while the server can be
/// reached.
class ContactService {
public:
    virtual ~ContactService() = default;

    /// Whether the service runs or can be started.
    virtual bool isThere() = 0;

    /// The address books that the user has enabled, in an order that stays the same.
    /// Errors: PlatformError when the service cannot be reached.
    virtual std::vector<ServiceBook> books() = 0;

    /// Reads these books, which `books` has listed, side by side: an answer for each.
    virtual std::vector<BookContent> read(const std::vector<std::string>& books) = 0;

    /// Those of these people who are in the book, and perhaps others.
    virtual BookContent find(const std::string& book, const std::vector<std::string>& people) = 0;

    virtual RemovalAnswer remove(const std::string& book,
                                 const std::vector<std::string>& people) = 0;
};

}  // namespace dunmora
