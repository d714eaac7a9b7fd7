#pragma once

#include "review/CardLines.h"

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace dunmora {

class ContactsParser;
class GroupWarnings;
class UniqueProperties;
enum class GroupWarning;

/// What there is to warn of before a deletion.
struct DeletionWarnings {
    /// A person to be deleted.
    struct Row {
        std::string uid;
        std::vector<GroupWarning> warnings;
        /// Whether it holds something that nobody keeps; `onlyHere` is empty, too, for a card that
        /// cannot be read.
        bool holdsSomethingUnique = false;
        std::vector<OnlyHere> onlyHere;
    };

    /// How many people would lose every copy, are to be deleted and share only empty fields, and
    /// hold something that nobody keeps.
    std::size_t losesEveryCopy = 0;
    std::size_t sharesOnlyEmptyFields = 0;
    std::size_t onlyHere = 0;
    std::vector<Row> rows;
};

/// The warnings about these people, all of whom are checked.
/// Thread: the main thread, while no job runs. Errors: none.
DeletionWarnings deletionWarnings(const ContactsParser& engine, std::span<const std::string> uids,
                                  const GroupWarnings& warnings, const UniqueProperties& cards);

}  // namespace dunmora
