#pragma once

#include <span>
#include <string>
#include <vector>

namespace dunmora {

class ContactRecord;
class ContactsParser;

/// A group of the review: the people who share a match key.
struct DuplicateGroup {
    std::string key;
    /// In the order of the rows; a part of the engine's `duplicates`, valid as long as those stay.
    std::span<const std::string> uids;
};

/// The record of each of the engine's rows; none for someone whom the engine does not know. Valid
/// as long as the engine's contacts stay. Thread: as reading the engine's collections.
std::vector<const ContactRecord*> recordsOfRows(const ContactsParser& engine);

/// The groups of the engine's rows, in their order, by the match fields chosen now. Quick enough
/// for the main thread: the preferences are asked once, not for every row. Thread: as reading the
/// engine's collections.
std::vector<DuplicateGroup> duplicateGroups(const ContactsParser& engine);

/// The same for who has the records of the rows at hand.
std::vector<DuplicateGroup> duplicateGroups(const ContactsParser& engine,
                                            std::span<const ContactRecord* const> records);

/// Whether everyone of the group is checked: the person behind it would be lost.
/// Thread: as reading the engine's collections.
bool losesEveryCopy(const ContactsParser& engine, const DuplicateGroup& group);

/// The match key of someone of whom every match field chosen now is empty: nothing but separators,
/// one for each.
std::string keyOfEmptyFields();

/// Whether the key is that of empty fields: the people who share it have no text in common. With no
/// field chosen every key is such.
bool sharesOnlyEmptyFields(const std::string& key);

}  // namespace dunmora
