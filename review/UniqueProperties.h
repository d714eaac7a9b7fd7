#pragma once

#include "platform/PersonCard.h"
#include "review/CardLines.h"
#include "review/KeptProperties.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <unordered_map>
#include <vector>

namespace dunmora {

class CardSource;
class ContactsParser;

/// What only one copy holds: the properties of a row's whole card that no unchecked row of its
/// group has, kept up to date row by row. Also what else the review shows of the rows' cards.
///
/// Keeps no text of the cards, at most hashes. The functions that return texts read the row's card
/// again, and those of the rows that it is compared with.
///
/// Thread: one at a time: a worker for `read`, the main thread for the rest while no job runs.
/// Errors: only `read` throws.
class UniqueProperties final {
public:
    /// Forgets all rows. To be called before a job changes the rows, and before the book is closed.
    void clear() { *this = {}; }

    /// How `cardHash` and the functions that return texts know a row's card.
    enum class Hashes {
        /// All cards are read, and their hashes are kept.
        Kept,
        /// Of cards that the book can compare as they are stored, only the properties in which
        /// those of a group differ are read, and the whole cards when they are asked for. Cards of
        /// a large book are compared on several threads, which have ended when `read` returns.
        WhenAsked,
    };

    /// Reads the cards and the check marks of all rows. `engine` and `cards` must stay alive until
    /// the next `clear` or `read`. `cards` is null for a book without cards: there is then nothing
    /// to show of any row. A card that cannot be read counts as one that holds something unique.
    /// Errors: PlatformError when the book cannot be reached.
    void read(const ContactsParser& engine, const CardSource* cards, Hashes hashes = Hashes::Kept);
    /// The same, on at most this many threads. The result does not depend on their number.
    void read(const ContactsParser& engine, const CardSource* cards, Hashes hashes,
              std::size_t threads);

    /// Reads the check marks of these rows again. Does nothing, and does not ask the engine, after
    /// `clear`.
    void rowsEdited(const ContactsParser& engine, std::span<const std::size_t> rows);

    /// Whether the row is checked and holds something that no unchecked row of its group has.
    bool has(std::size_t row) const;
    /// How many rows those are.
    std::size_t count() const { return kept_.count(); }
    /// The next of those rows: after the given one, wrapping from the last to the first, or the
    /// very first one without a row. Nullopt when there is none.
    std::optional<std::size_t> nextRow(std::optional<std::size_t> row) const;

    /// What is unique about the row, in the order of its card; empty unless `has`, and for a card
    /// that cannot be read.
    std::vector<OnlyHere> onlyHere(std::size_t row) const;
    /// The same in one sentence that is safe to display: "Only here: e-mail ann@example.org,
    /// note." Empty unless `has`.
    std::string text(std::size_t row) const;

    /// The row's card for the user, compared with the other unchecked rows of the group. Nullopt
    /// when it cannot be read.
    std::optional<std::vector<CardLine>> lines(std::size_t row) const;

    /// Equal for rows whose whole cards are equal, also after another reading in the same process.
    /// Nullopt for a card that could not be read.
    std::optional<std::uint64_t> cardHash(std::size_t row) const;

    /// The book or file that the row is from, valid until the next `clear` or `read`; null when it
    /// is not known.
    const PersonSource* source(std::size_t row) const;
    /// Whether the rows are from more than one book or file.
    bool hasSeveralSources() const { return sources_.size() > 1; }

    /// What to show instead of the name in a row whose name fields are all blank (`substituteName`
    /// of its card); empty for a row with a name.
    std::string substituteName(std::size_t row) const;

private:
    enum class HashState : std::uint8_t { Unreadable, Known, WhenAsked };
    using Names = std::vector<std::string>;
    struct Row {
        // If it is known.
        std::uint64_t cardHash = 0;
        std::uint32_t source;
        HashState state = HashState::Unreadable;
    };

    class Reading;
    class Comparing;

    std::vector<bool> keptOf(std::size_t row, const PersonCard& card) const;
    std::optional<PersonCard> cardOf(std::size_t row) const;
    /// The row's card; nullopt also when it is no longer the one that was compared.
    std::optional<PersonCard> comparedCardOf(std::size_t row) const;

    const ContactsParser* engine_ = nullptr;
    const CardSource* cards_ = nullptr;
    KeptProperties kept_;
    std::vector<Row> rows_;
    // For each group of rows that the book has compared, the names of the properties that were read
    // and come after the one that stands for all others in `kept_`; kNotCompared for the others.
    std::vector<std::uint32_t> namesOfGroup_;
    std::vector<Names> names_;
    std::vector<PersonSource> sources_;
    // A table asks for the same texts whenever it is drawn, and a card may have a large photo.
    mutable std::unordered_map<std::size_t, std::string> texts_;
};

}  // namespace dunmora
