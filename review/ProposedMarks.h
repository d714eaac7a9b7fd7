#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace dunmora {

class ContactsParser;

/// The check marks that the last search proposed, and which rows have other ones now.
///
/// Thread: the main thread, while no job runs. Errors: none.
class ProposedMarks final {
public:
    /// Forgets the proposal. To be called before a job changes the rows.
    void clear();

    /// Notes that a search has just proposed the marks of all rows.
    void searched(const ContactsParser& engine);

    /// Notes that a deletion has removed rows. The proposal for the others stays, except that it
    /// never checks all that is left of a group. No mark counts as changed any more.
    void deleted(const ContactsParser& engine);

    /// Reads the marks of these rows again.
    void rowsEdited(const ContactsParser& engine, std::span<const std::size_t> rows);

    /// How many marks have been changed since the search or the last deletion, without those that
    /// were changed back.
    std::size_t changed() const { return changed_; }

    /// Whether the proposal is to delete the person in this row, which must exist.
    bool isChecked(std::size_t row) const { return proposed_[row]; }

    /// Sets the proposed marks again. Returns the rows whose marks have changed, in ascending
    /// order; `rowsEdited` must be called with them.
    std::vector<std::size_t> restore(ContactsParser& engine) const;

private:
    /// The proposal by the number of the row right after the search.
    std::vector<bool> searched_;
    /// By row.
    std::vector<bool> proposed_;
    std::vector<bool> before_;
    std::vector<bool> isChanged_;
    std::size_t changed_ = 0;
};

}  // namespace dunmora
