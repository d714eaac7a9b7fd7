#pragma once

#include "programs/dunmora-cli/JsonText.h"
#include "review/DuplicateGroups.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

class GroupWarnings;
class TextPieces;
class UniqueProperties;
struct DeletionWarnings;

/// The members of the review's document other than the people.
struct ReviewHead {
    std::string_view addressBook;
    std::vector<std::string_view> match;
    std::size_t skipped = 0;
    /// The remarks of the book's `ReadingNotes`.
    std::vector<std::string> remarks;
};

/// Prints the review as one JSON document on one line, with a line end. Each row ends with the
/// warnings about it and with what only it holds. Errors: those of `out`.
void printReviewJson(TextPieces& out, const ContactsParser& engine,
                     std::span<const DuplicateGroup> groups, const GroupWarnings& warnings,
                     const UniqueProperties& cards, const ReviewHead& head,
                     JsonCharacters characters);

/// A deletion's result as one JSON document on one line, with a line end: who was (or, in a dry
/// run, would be) deleted, the counts after it, the remarks of the book's `ReadingNotes`, and what
/// there was to warn of; `warnings` may have more rows.
std::string deletionJson(const ContactsParser& engine, std::span<const std::string> deleted,
                         bool dryRun, const DeletionWarnings& warnings,
                         std::span<const std::string> remarks, JsonCharacters characters);

}  // namespace dunmora
