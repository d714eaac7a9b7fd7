#pragma once

#include "platform/Person.h"

#include <cstddef>
#include <span>
#include <string>
#include <vector>

namespace dunmora {

class CardSource;
class ContactsParser;
class GroupWarnings;

// The people checked for deletion, and those who would be left without a copy.
// Thread: as reading or marking the engine's collections.

/// Whether the person in the row is checked; false for a row that does not exist or whose person
/// the engine does not know.
bool isCheckedRow(const ContactsParser& engine, std::size_t row);

/// How many people are checked, duplicate or not.
std::size_t countOfChecked(const ContactsParser& engine);

/// The uids of everyone who is checked, duplicate or not, in the address book's order.
std::vector<std::string> checkedUids(const ContactsParser& engine);

/// Those people of a listing whose records are checked, in the order of the listing.
std::vector<const Person*> checkedAmong(std::span<const Person> people,
                                        const ContactsParser& engine);

/// The uids of everyone who is checked without being a duplicate. Nobody shares their match key, so
/// they are last copies, too.
std::vector<std::string> checkedWithoutDuplicates(const ContactsParser& engine);

/// Unchecks those people. They are in no row.
void uncheckWithoutDuplicates(ContactsParser& engine);

/// Unchecks the first person of every group that would lose every copy. Returns their rows;
/// `warnings` is out of date until its `rowsEdited` is called with them.
std::vector<std::size_t> keepOneOfEach(ContactsParser& engine, const GroupWarnings& warnings);

/// The uids of the people who would be left without a copy: the first of each group that would lose
/// every copy, then those checked without being a duplicate.
std::vector<std::string> lastCopyUids(const ContactsParser& engine, const GroupWarnings& warnings);

/// The names of those people (`personName`). A person without a name is "(no name, uid 7)", because
/// the uid can be given to a command.
std::vector<std::string> lastCopies(const ContactsParser& engine, const GroupWarnings& warnings,
                                    const CardSource* cards = nullptr);

}  // namespace dunmora
