#include "review/DuplicateGroups.h"

#include "engine/ContactsParser.h"
#include "engine/MatchKey.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace dunmora {

namespace {

/// Someone whom the engine does not know has the empty key.
std::string keyOf(const ContactRecord* contact, const MatchFieldChoice& choice)
{
    return contact == nullptr ? std::string() : matchKey(*contact, choice);
}

/// Whether both have the same text in each of the fields, and so the same key. Those who have not
/// may share a key all the same: a separator is a text's, too.
bool haveSameTexts(const ContactRecord* one, const ContactRecord* other,
                   const MatchFieldChoice& choice)
{
    return one != nullptr && other != nullptr &&
           std::all_of(kMatchFields.begin(), kMatchFields.end(), [&](const ContactField* field) {
               return !choice.test(field->match->place) ||
                      one->text(field->key) == other->text(field->key);
           });
}

}  // namespace

std::vector<const ContactRecord*> recordsOfRows(const ContactsParser& engine)
{
    // In a sweep of its own: what the processor waits for most is memory that is far apart, and one
    // search does not wait for the one before.
    const auto& rows = engine.duplicates();
    std::vector<const ContactRecord*> records(rows.size());
    std::transform(rows.begin(), rows.end(), records.begin(),
                   [&](const std::string& uid) { return engine.contacts().find(uid); });
    return records;
}

std::vector<DuplicateGroup> duplicateGroups(const ContactsParser& engine)
{
    return duplicateGroups(engine, recordsOfRows(engine));
}

std::vector<DuplicateGroup> duplicateGroups(const ContactsParser& engine,
                                            std::span<const ContactRecord* const> records)
{
    // Members of a group stand next to each other, and no two groups share a key: a new key begins
    // a new group.
    const std::span<const std::string> rows = engine.duplicates();
    const auto fields = chosenMatchFields();
    std::vector<DuplicateGroup> groups;
    std::size_t first = 0;
    const ContactRecord* before = nullptr;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        const auto* const contact = records[row];
        if (groups.empty() || !haveSameTexts(before, contact, fields)) {
            auto key = keyOf(contact, fields);
            if (groups.empty() || groups.back().key != key) {
                groups.push_back({std::move(key), {}});
                first = row;
            }
        }
        groups.back().uids = rows.subspan(first, row - first + 1);
        before = contact;
    }
    return groups;
}

bool losesEveryCopy(const ContactsParser& engine, const DuplicateGroup& group)
{
    return std::all_of(group.uids.begin(), group.uids.end(), [&](const std::string& uid) {
        const auto* record = engine.contacts().find(uid);
        return record != nullptr && record->isChecked();
    });
}

std::string keyOfEmptyFields()
{
    const ContactRecord nobody;
    return keyOf(&nobody, chosenMatchFields());
}

bool sharesOnlyEmptyFields(const std::string& key)
{
    return key == keyOfEmptyFields();
}

}  // namespace dunmora
