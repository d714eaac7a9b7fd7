#include "engine/ContactsParser.h"

#include "base/NotificationCenter.h"
#include "engine/MatchKey.h"
#include "engine/PhoneNumber.h"
#include "engine/SafeString.h"
#include "platform/AddressBook.h"
#include "platform/Platform.h"
#include "platform/PlatformError.h"
#include "text/TextHash.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <unordered_set>
#include <utility>

namespace dunmora {

namespace {

/// Undoes a job that ends with an exception.
class Undo final {
public:
    explicit Undo(std::function<void()> undo) : undo_(std::move(undo)) {}
    Undo(const Undo&) = delete;
    Undo& operator=(const Undo&) = delete;
    ~Undo()
    {
        if (undo_) {
            undo_();
        }
    }

    void dismiss() { undo_ = nullptr; }

private:
    std::function<void()> undo_;
};

/// The open address book. Errors: PlatformError when none is open.
AddressBook& openBook()
{
    auto* const book = Platform::current().addressBook;
    if (book == nullptr) {
        throw PlatformError("No address book is open. Choose File > Open… to open a vCard file, "
                            "or File > Open Folder… to open a folder of them.");
    }
    return *book;
}

/// The person's text in a text field.
std::string_view textOf(const Person& person, const ContactField& field)
{
    switch (field.kind) {
    case FieldKind::Uid:
        return person.uid;
    case FieldKind::Name:
        return SafeString(person.*field.name);
    case FieldKind::Phone:
        return PhoneNumber(person.phones, field.phoneWord);
    case FieldKind::Modified:
    case FieldKind::Check:
        break;
    }
    return {};
}

ContactRecord recordOf(const Person& person)
{
    ContactRecord::Texts texts;
    std::transform(kTextFields.begin(), kTextFields.end(), texts.begin(),
                   [&](const ContactField* field) { return textOf(person, *field); });
    ContactRecord record(texts);
    if (person.modified) {
        record.setObject(*person.modified, kContactModified);
    }
    return record;
}

bool hasPhoneNumber(const ContactRecord& record)
{
    return std::any_of(kTextFields.begin(), kTextFields.end(), [&](const ContactField* field) {
        return field->kind == FieldKind::Phone && !record.text(field->key).empty();
    });
}

}  // namespace

ContactsParser& ContactsParser::parser()
{
    static auto& engine = *new ContactsParser;
    return engine;
}

ContactRecord* ContactsParser::recordInRow(std::size_t row)
{
    return const_cast<ContactRecord*>(std::as_const(*this).recordInRow(row));
}

const ContactRecord* ContactsParser::recordInRow(std::size_t row) const
{
    if (row >= duplicates_.size()) {
        return nullptr;
    }
    if (records_.empty() || recordsFound_ != contacts_.positionsChanged()) {
        findRecords();
    }
    const auto position = records_[row];
    const auto* const record = position == Contacts::kNowhere ? nullptr : contacts_.at(position);
    // Somebody who was not there may have been stored since.
    return record != nullptr ? record : contacts_.find(duplicates_[row]);
}

void ContactsParser::reset()
{
    records_.clear();
    duplicates_.clear();
    contactGroups_.clear();
}

bool ContactsParser::load()
{
    lock();
    postMessage("Loading Contacts...");
    contacts_.clear();
    // No rows are better than rows of people who are no longer there.
    Undo undo([this] {
        contacts_.clear();
        reset();
    });

    const auto people = openBook().readPeople();
    contacts_.reserve(people.size());
    const auto progress = std::make_shared<Progress>();
    progress->total = static_cast<std::int32_t>(people.size());
    for (std::size_t i = 0; i < people.size(); ++i) {
        progress->current = static_cast<std::int32_t>(i);
        postProgress(progress);
        contacts_[people[i].uid] = recordOf(people[i]);
    }

    undo.dismiss();
    unlock();
    postFinished(kJobLoading);
    return true;
}

void ContactsParser::findDupes()
{
    lock();
    postMessage("Sorting contacts...");
    records_.clear();
    duplicates_.clear();
    Undo undo([this] { reset(); });

    Groups groups;
    groups.reserve(contacts_.size());
    const auto progress = std::make_shared<Progress>();
    progress->total = static_cast<std::int32_t>(contacts_.size());
    std::int32_t index = 0;
    for (const auto& contact : contacts_) {
        progress->current = index++;
        postProgress(progress);
        // Read for each key: another choice of fields takes effect at once, even during a search.
        searchedFields_ = chosenMatchFields();
        groups[matchKey(contact.value, searchedFields_)].push_back(contact.key);
    }

    postMessage("Finding duplicated contacts...");
    progress->total = static_cast<std::int32_t>(groups.size());
    index = 0;
    for (const auto& group : groups) {
        progress->current = index++;
        postProgress(progress);
        if (group.value.size() >= 2) {
            duplicates_.insert(duplicates_.end(), group.value.begin(), group.value.end());
        }
    }

    contactGroups_ = std::move(groups);
    markDeletedContacts();
    findRecords();
    undo.dismiss();
    unlock();
    postFinished(kJobFinding);
}

void ContactsParser::markDeletedContacts()
{
    for (const auto& group : contactGroups_) {
        if (group.value.size() < 2) {
            continue;
        }
        bool kept = false;
        for (const auto& uid : group.value) {
            auto* record = contacts_.find(uid);
            if (record == nullptr) {
                continue;
            }
            if (!kept && hasPhoneNumber(*record)) {
                kept = true;
            } else {
                record->setObject(true, kContactCheck);
            }
        }
    }
}

void ContactsParser::deleteContacts(const Uids& uids)
{
    {
        const std::lock_guard guard(monitor_);
        postMessage("Deleting checked contacts...");
        auto& book = openBook();
        const auto progress = std::make_shared<Progress>();

        const std::unordered_set<std::string_view, TextHash> checked(uids.begin(), uids.end());
        std::vector<const Person*> removals;
        std::unordered_set<std::string_view, TextHash> removed;
        for (const auto& person : book.people()) {
            if (checked.contains(person.uid)) {
                removals.push_back(&person);
                removed.insert(person.uid);
            }
        }
        // Hashed, and the rows in one sweep: row by row, tens of thousands of people would take
        // minutes.
        records_.clear();
        std::erase_if(duplicates_, [&](const std::string& uid) { return removed.contains(uid); });
        for (const auto* person : removals) {
            contacts_.erase(person->uid);
        }
        findRecords();

        progress->total = static_cast<std::int32_t>(removals.size());
        std::int32_t counter = 0;
        for (const auto* person : removals) {
            progress->current = counter;
            postProgress(progress);
            book.removeRecord(*person);
            counter += 2;
        }
        book.save();
    }
    postFinished(kJobDeleting);
}

// Part of the engine's interface, although it needs only the preferences.
// NOLINTNEXTLINE(readability-convert-member-functions-to-static)
std::string ContactsParser::keyForContact(const ContactRecord& contact) const
{
    return matchKey(contact, chosenMatchFields());
}

void ContactsParser::findRecords() const
{
    records_.resize(duplicates_.size());
    std::transform(duplicates_.begin(), duplicates_.end(), records_.begin(),
                   [this](const std::string& uid) { return contacts_.positionOf(uid); });
    recordsFound_ = contacts_.positionsChanged();
}

void ContactsParser::postMessage(std::string_view text)
{
    NotificationCenter::defaultCenter().postText(kMsgShowMessage, this, text);
}

void ContactsParser::postProgress(const std::shared_ptr<Progress>& progress)
{
    NotificationCenter::defaultCenter().postNotification(kMsgProgress, this, progress);
}

void ContactsParser::postFinished(std::string_view job)
{
    NotificationCenter::defaultCenter().postText(kMsgFinished, this, job);
}

}  // namespace dunmora
