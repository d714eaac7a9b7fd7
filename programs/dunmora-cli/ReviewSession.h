#pragma once

#include "programs/dunmora-cli/OverlayUserDefaults.h"
#include "programs/dunmora-cli/ProgressLine.h"
#include "programs/dunmora-cli/TerminalPlatform.h"

#include <optional>

namespace dunmora {

class AddressBook;
class CardSource;
class ContactsParser;
struct BookRequest;
struct CliEnvironment;

/// Whether a session changes the address book or only pretends to.
enum class Changes { Made, NotMade };

/// Runs the engine's jobs for one command, one after another, on the platform that its request
/// asks for.
/// Thread: the main thread.
class ReviewSession final {
public:
    /// Nothing is read yet. `request` and `environment` must outlive the session.
    /// Errors: PlatformError when there can be no such address book.
    ReviewSession(const BookRequest& request, const CliEnvironment& environment, Changes changes);
    ~ReviewSession() = default;
    ReviewSession(const ReviewSession&) = delete;
    ReviewSession& operator=(const ReviewSession&) = delete;

    /// Reads the address book, finds the duplicates and reports the book's notes.
    /// Errors: PlatformError when the book cannot be read.
    ContactsParser& review();

    /// Only after `review`, which throws when there is no book.
    AddressBook& addressBook() const { return *platform_.book().addressBook; }
    /// Whether a backup of the book can be restored into it.
    bool canRestore() const { return platform_.book().cardRestorer != nullptr; }
    /// The book's whole cards; null when it has none.
    const CardSource* cards() const { return platform_.book().cardSource.get(); }
    /// The same, for a backup. Errors: CommandError when there are none.
    const CardSource& cardSource() const;

private:
    void reportNotes() const;

    const BookRequest& request_;
    const CliEnvironment& environment_;
    OverlayUserDefaults overlay_;
    // Refers to the overlay.
    TerminalPlatform platform_;
    std::optional<ProgressLine> progressLine_;
};

}  // namespace dunmora
