#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace dunmora {

class ContactsParser;
class GroupWarnings;
class ProposedMarks;

/// The check marks that the user has set, remembered while the address book is read and searched
/// again. They are restored only in groups that have the same members with the same cards as
/// before; everywhere else the new proposal holds.
///
/// Thread: the main thread, while no job runs. Errors: none.
class KeptMarks final {
public:
    /// A hash of the whole card of the person in a row, the same in every reading; nullopt for a
    /// card that cannot be read, which is equal to no other.
    using CardHash = std::function<std::optional<std::uint64_t>(std::size_t row)>;

    /// Nothing to keep.
    KeptMarks() = default;

    /// Remembers all marks of every group in which one differs from the proposal.
    KeptMarks(const ContactsParser& engine, const GroupWarnings& groups,
              const ProposedMarks& proposal, const CardHash& cardHash);

    /// How many marks differ from the proposal.
    std::size_t count() const { return count_; }

    struct Restored {
        /// Whose marks have changed, in ascending order.
        std::vector<std::size_t> rows;
        /// How many of `count` have been restored, and how many have not.
        std::size_t kept = 0;
        std::size_t lost = 0;
    };

    /// Restores the marks after another search. `groups` is out of date until its `rowsEdited` is
    /// called with the rows.
    Restored restore(ContactsParser& engine, const GroupWarnings& groups,
                     const CardHash& cardHash) const;

private:
    struct Copy {
        std::string uid;
        std::optional<std::uint64_t> card;
        bool isChecked = false;
    };
    struct Group {
        /// In the order of the rows.
        std::vector<Copy> copies;
        /// How many marks differ from the proposal.
        std::size_t changed = 0;
    };

    std::vector<Group> groups_;
    std::size_t count_ = 0;
};

}  // namespace dunmora
