#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

/// What became of people who were to be put back.
struct Restoration {
    /// How many have been put back.
    std::size_t restored = 0;
    /// How many were already there with the same card, and were left alone.
    std::size_t present = 0;
    /// Whole sentences that name each person, card or file that could not be put back, and why.
    /// Empty when everybody is there again.
    std::vector<std::string> failures;
    /// Whole sentences about what is different from before, such as a file that has another name.
    std::vector<std::string> remarks;
};

/// Puts people back into an address book: those whom its own saves removed, or those of a backup.
///
/// Remembers the removed cards and their places from the time the book was opened, apart from its
/// readings: another reading forgets nothing.
///
/// Thread: as the `AddressBook` that it belongs to: any, one call at a time to all of its ports. A
/// call may block on a disk or a service.
class CardRestorer {
public:
    virtual ~CardRestorer() = default;

    /// How many saves can be undone, also those that failed after they had removed somebody.
    virtual std::size_t deletions() const = 0;

    /// How many people `restoreLast` would put back: those whom the last save that was not undone
    /// removed, without those who have been put back since. 0 when there is nothing to undo.
    virtual std::size_t lastRemoved() const = 0;

    /// The cards of those people as the content of one file, like `CardSource::cards`; empty when
    /// there are none. Errors: PlatformError when the cards do not fit into one text.
    virtual std::string lastRemovedCards() const = 0;

    /// Puts those people back where they were, with everything that their cards hold. Where
    /// somebody else has changed the book since, adds them without changing anything else. The save
    /// before becomes the last one when nobody is left to put back. Errors: PlatformError when
    /// nothing was changed; the people are then still remembered, as are those whom the result
    /// names as failures.
    virtual Restoration restoreLast() = 0;

    /// Whether a restoration writes or only reports what it would do.
    enum class Mode { Write, DryRun };

    /// Adds the people of a backup, the content of a vCard file. Somebody whose card is there
    /// already is left alone, and so is somebody whose uid belongs to another card now; the latter
    /// is a failure. Without a uid the card's text decides.
    /// Errors: PlatformError when nothing was changed, such as for a text without cards.
    virtual Restoration restore(std::string_view backup, Mode mode) = 0;
};

}  // namespace dunmora
