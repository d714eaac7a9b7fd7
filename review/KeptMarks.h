#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
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
        /// Where its uid ends in `uids_`; that of the copy before is the beginning.
        std::size_t uidEnd = 0;
        std::optional<std::uint64_t> card;
        bool isChecked = false;
    };
    /// Adjacent copies, in the order of the rows.
    struct Group {
        std::size_t firstCopy = 0;
        std::size_t size = 0;
        /// How many marks differ from the proposal.
        std::size_t changed = 0;
    };
    class GroupSearch;

    std::string_view uidOf(std::size_t copy) const;
    std::string_view smallestUidOf(const Group& group) const;
    /// Finds the row of each of the group's copies, in their order, among as many rows from
    /// `firstRow` on. Returns false when those have other people.
    bool findRows(const Group& group, std::span<const std::string> uids, std::size_t firstRow,
                  std::vector<std::size_t>& rows) const;

    std::vector<Group> groups_;
    std::vector<Copy> copies_;
    // Back to back: there may be a million.
    std::string uids_;
    std::size_t count_ = 0;
};

}  // namespace dunmora
