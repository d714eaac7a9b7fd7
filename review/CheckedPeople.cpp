#include "review/CheckedPeople.h"

#include "engine/ContactsParser.h"
#include "review/GroupWarnings.h"
#include "review/PersonName.h"
#include "text/TextHash.h"

#include <algorithm>
#include <cstddef>
#include <string_view>
#include <unordered_set>

namespace dunmora {

namespace {

std::string nameOrUid(const ContactRecord& contact, const CardSource* cards)
{
    auto name = personName(contact, cards);
    return name.empty() ? "(no name, uid " + std::string(contact.text(kContactUid)) + ")" : name;
}

std::size_t countOfCheckedRows(const ContactsParser& engine)
{
    std::size_t count = 0;
    for (std::size_t row = 0; row < engine.duplicates().size(); ++row) {
        count += isCheckedRow(engine, row) ? 1 : 0;
    }
    return count;
}

}  // namespace

bool isCheckedRow(const ContactsParser& engine, std::size_t row)
{
    const auto* const contact = engine.recordInRow(row);
    return contact != nullptr && contact->isChecked();
}

std::size_t countOfChecked(const ContactsParser& engine)
{
    const auto& contacts = engine.contacts();
    return static_cast<std::size_t>(
        std::count_if(contacts.begin(), contacts.end(),
                      [](const auto& contact) { return contact.value.isChecked(); }));
}

std::vector<std::string> checkedUids(const ContactsParser& engine)
{
    std::vector<std::string> uids;
    for (const auto& contact : engine.contacts()) {
        if (contact.value.isChecked()) {
            uids.emplace_back(contact.key);
        }
    }
    return uids;
}

std::vector<const Person*> checkedAmong(std::span<const Person> people,
                                        const ContactsParser& engine)
{
    std::vector<const Person*> checked;
    const auto& contacts = engine.contacts();
    // Most books list everybody in the order of the contacts, so that the next contact is the one.
    auto next = contacts.begin();
    for (const auto& person : people) {
        const ContactRecord* record = nullptr;
        if (next != contacts.end() && next->key == person.uid) {
            record = &next->value;
            ++next;
        } else {
            record = contacts.find(person.uid);
        }
        if (record != nullptr && record->isChecked()) {
            checked.push_back(&person);
        }
    }
    return checked;
}

std::vector<std::string> checkedWithoutDuplicates(const ContactsParser& engine)
{
    // Usually there is nobody, and a table of all duplicates would take longer than everything else
    // that precedes a deletion.
    if (countOfCheckedRows(engine) == countOfChecked(engine)) {
        return {};
    }
    const std::unordered_set<std::string_view, TextHash> duplicates(engine.duplicates().begin(),
                                                                    engine.duplicates().end());
    auto uids = checkedUids(engine);
    std::erase_if(uids, [&](const std::string& uid) { return duplicates.contains(uid); });
    return uids;
}

void uncheckWithoutDuplicates(ContactsParser& engine)
{
    for (const auto& uid : checkedWithoutDuplicates(engine)) {
        engine.contacts().find(uid)->setObject(false, kContactCheck);
    }
}

std::vector<std::size_t> keepOneOfEach(ContactsParser& engine, const GroupWarnings& warnings)
{
    auto rows = warnings.firstRowsThatLoseEveryCopy();
    for (const auto row : rows) {
        engine.recordInRow(row)->setObject(false, kContactCheck);
    }
    return rows;
}

std::vector<std::string> lastCopyUids(const ContactsParser& engine, const GroupWarnings& warnings)
{
    std::vector<std::string> uids;
    for (const auto row : warnings.firstRowsThatLoseEveryCopy()) {
        uids.push_back(engine.duplicates()[row]);
    }
    const auto others = checkedWithoutDuplicates(engine);
    uids.insert(uids.end(), others.begin(), others.end());
    return uids;
}

std::vector<std::string> lastCopies(const ContactsParser& engine, const GroupWarnings& warnings,
                                    const CardSource* cards)
{
    auto people = lastCopyUids(engine, warnings);
    for (auto& person : people) {
        person = nameOrUid(*engine.contacts().find(person), cards);
    }
    return people;
}

}  // namespace dunmora
