#pragma once

#include "platform/Alert.h"
#include "text/Counted.h"

#include <cstddef>
#include <string>
#include <vector>

namespace dunmora {

class CardSource;
class ContactsParser;
class GroupWarnings;

/// What the user may have overlooked about a deletion of everyone who is checked.
struct DeletionDoubts {
    /// How many people would be left without a copy (`lastCopyUids`), and the names of the first
    /// five; a person without a name is "no name".
    std::size_t lost = 0;
    std::vector<std::string> lostNames;
    /// How many of those checked share only empty fields with others.
    std::size_t sharingOnlyEmptyFields = 0;

    bool areAny() const { return lost > 0 || sharingOnlyEmptyFields > 0; }
};

/// `cards` name the people whose names are blank; it may be null.
/// Thread: as reading the engine's collections, and as `CardSource`.
DeletionDoubts deletionDoubts(const ContactsParser& engine, const GroupWarnings& warnings,
                              const CardSource* cards = nullptr);

/// The question about these doubts, of which there is at least one. The default button leaves the
/// people out, the other button deletes them too, and the alternate one cancels.
AlertContent doubtQuestion(const DeletionDoubts& doubts, NumberText number = plainNumber);

/// Unchecks everyone who gives rise to a doubt: the first person of every group that would lose
/// every copy, everyone in a group that shares only empty fields, and everyone who is checked
/// without being a duplicate. Updates the warnings. Returns the rows whose marks have changed, each
/// once.
/// Thread: as marking the engine's collections.
std::vector<std::size_t> leaveDoubtsOut(ContactsParser& engine, GroupWarnings& warnings);

}  // namespace dunmora
