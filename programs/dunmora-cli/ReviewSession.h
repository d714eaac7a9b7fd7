#pragma once

#include "programs/dunmora-cli/OverlayUserDefaults.h"
#include "programs/dunmora-cli/ProgressLine.h"
#include "programs/dunmora-cli/TerminalPlatform.h"

#include <optional>

namespace dunmora {

class AddressBook;
class ContactsParser;
struct BookRequest;
struct CliEnvironment;

/// Whether a session's changes of the address book are made or only seem to be.
enum class Changes { Made, NotMade };

/// One command's way from the address book to the review: it installs the platform that the
/// request asks for and runs the engine's jobs on it, one after the other.
/// Thread: the main thread.
class ReviewSession final {
public:
    /// Nothing is read yet. `request` and `environment` must outlive the session.
    /// Errors: PlatformError when there can be no such address book.
    ReviewSession(const BookRequest& request, const CliEnvironment& environment, Changes changes);
    ~ReviewSession() = default;
    ReviewSession(const ReviewSession&) = delete;
    ReviewSession& operator=(const ReviewSession&) = delete;

    /// Reads the address book, finds the duplicates and tells the user the book's notes.
    /// Errors: PlatformError when the book cannot be read.
    ContactsParser& review();

    AddressBook& addressBook() const { return platform_.addressBook(); }

private:
    void tellNotes() const;

    const BookRequest& request_;
    const CliEnvironment& environment_;
    OverlayUserDefaults overlay_;
    // Refers to the overlay.
    TerminalPlatform platform_;
    std::optional<ProgressLine> progressLine_;
};

}  // namespace dunmora
