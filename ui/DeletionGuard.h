#pragma once

namespace dunmora {

class ContactsParser;
class GroupWarnings;

/// What the user decided about a deletion that might take more than intended.
enum class DeletionDecision {
    /// Nothing was doubtful, or the user wants to delete everyone who is checked.
    Delete,
    /// Delete only the others.
    LeaveOut,
    Cancel
};

/// Asks the user, if there is a reason to.
/// Thread: the main thread, while no job runs. Errors: none.
DeletionDecision decideOnDeletion(const ContactsParser& engine, const GroupWarnings& warnings);

}  // namespace dunmora
