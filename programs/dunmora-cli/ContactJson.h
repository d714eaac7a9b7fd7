#pragma once

#include "programs/dunmora-cli/JsonText.h"
#include "review/DuplicateGroups.h"

#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

class UniqueProperties;

/// The members of the review's document other than the people.
struct ReviewHead {
    std::string_view addressBook;
    std::vector<std::string_view> match;
    std::size_t skipped = 0;
};

/// The review as one JSON document on one line, with a line end. Each row ends with what only it
/// holds.
std::string reviewJson(const ContactsParser& engine, std::span<const DuplicateGroup> groups,
                       const UniqueProperties& cards, const ReviewHead& head,
                       JsonCharacters characters);

/// A deletion's result as one JSON document on one line, with a line end: who was (or, in a dry
/// run, would be) deleted, and the counts after it.
std::string deletionJson(const ContactsParser& engine, std::span<const std::string> deleted,
                         bool dryRun, JsonCharacters characters);

}  // namespace dunmora
