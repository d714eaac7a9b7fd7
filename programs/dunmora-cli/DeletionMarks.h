#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace dunmora {

class ContactsParser;

/// Sets and takes away check marks on top of those that the engine proposed.
/// Errors: CommandError (wrong use), before any mark has changed, for a uid that nobody has or
/// that stands in both lists.
void applyMarks(ContactsParser& engine, std::span<const std::string> check,
                std::span<const std::string> uncheck);

/// Unchecks the first of every group that would lose every copy, and everyone who is checked
/// without being a duplicate: they are last copies, too.
void keepOneCopy(ContactsParser& engine);

/// The uids of all people who are checked, duplicates or not, in the address book's order.
std::vector<std::string> checkedUids(const ContactsParser& engine);

/// The names of the people of whom no copy would be left: one a group that would lose everyone,
/// then those checked without being a duplicate.
std::vector<std::string> lastCopies(const ContactsParser& engine);

/// How many checked people belong to a group that shares nothing but empty fields.
std::size_t blankMatches(const ContactsParser& engine);

}  // namespace dunmora
