#include "engine/ContactsParser.h"

#include "base/NotificationCenter.h"
#include "engine/MatchKey.h"
#include "engine/PhoneNumber.h"
#include "engine/SafeString.h"
#include "engine/UidSet.h"
#include "platform/AddressBook.h"
#include "platform/Platform.h"
#include "platform/PlatformError.h"
#include "text/LookAhead.h"
#include "text/Prefetch.h"
#include "text/TextHash.h"
#include "text/TextIndex.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
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

/// The person's record, with its texts in the arena.
ContactRecord recordOf(const Person& person, TextArena& texts)
{
    ContactRecord::Texts fields;
    std::transform(kTextFields.begin(), kTextFields.end(), fields.begin(),
                   [&](const ContactField* field) { return textOf(person, *field); });
    ContactRecord record(fields, texts);
    if (person.modified) {
        record.setModified(*person.modified);
    }
    return record;
}

/// Asks the processor for the person's uid and name, which come early in most cards; it reads on
/// from there by itself. A book has them in memory that is much larger than the processor's cache.
void prefetchTexts(const Person& person)
{
    prefetch(person.uid.data());
    prefetch(person.firstName.value_or("").data());
}

bool hasPhoneNumber(const ContactRecord& record)
{
    for (std::size_t place = 0; place < kTextFields.size(); ++place) {
        if (kTextFields[place]->kind == FieldKind::Phone && !record.textAt(place).empty()) {
            return true;
        }
    }
    return false;
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
    const auto position = positionNow(rowPositions_[row], duplicates_[row]);
    return position == Contacts::kNowhere ? nullptr : contacts_.at(position);
}

void ContactsParser::reset()
{
    rowPositions_.clear();
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
    const Payload payload = progress;
    progress->total = static_cast<std::int32_t>(people.size());
    visitWithLookAhead<std::uint64_t>(
        people.size(),
        [&](std::size_t i, std::uint64_t& hash) {
            if (i + kLookAhead < people.size()) {
                prefetchTexts(people[i + kLookAhead]);
            }
            hash = TextIndex::hashOf(people[i].uid);
            contacts_.prefetch(hash);
        },
        [&](std::size_t i, std::uint64_t hash) {
            progress->current = static_cast<std::int32_t>(i);
            postProgress(payload);
            contacts_.store(
                people[i].uid, hash, [&] { return recordOf(people[i], contacts_.texts()); },
                [](const ContactRecord& record) { return record.textAt(textPlace(kContactUid)); });
        });

    undo.dismiss();
    unlock();
    postFinished(kJobLoading);
    return true;
}

void ContactsParser::findDupes()
{
    lock();
    postMessage("Sorting contacts...");
    rowPositions_.clear();
    duplicates_.clear();
    Undo undo([this] { reset(); });

    Groups groups(contacts_);
    const auto progress = std::make_shared<Progress>();
    const Payload payload = progress;
    progress->total = static_cast<std::int32_t>(contacts_.size());
    struct Member {
        std::size_t position;
        MatchFieldChoice choice;
        std::string key;
        std::uint64_t hash;
    };
    visitWithLookAhead<Member>(
        contacts_.size(),
        [&, contact = contacts_.begin()](std::size_t i, Member& member) mutable {
            progress->current = static_cast<std::int32_t>(i);
            postProgress(payload);
            // Read for each key: another choice of fields takes effect at once, even during a
            // search.
            searchedFields_ = chosenMatchFields();
            member.position = contact.position();
            member.choice = searchedFields_;
            member.key.clear();
            appendMatchKey(member.key, contact->value, searchedFields_);
            member.hash = TextIndex::hashOf(member.key);
            groups.prefetch(member.hash);
            ++contact;
        },
        [&](std::size_t /*i*/, const Member& member) {
            groups.add(member.position, member.choice, member.key, member.hash);
        });

    postMessage("Finding duplicated contacts...");
    progress->total = static_cast<std::int32_t>(groups.size());
    duplicates_.reserve(groups.duplicates());
    rowPositions_.reserve(groups.duplicates());
    std::int32_t index = 0;
    for (const auto& group : groups) {
        progress->current = index++;
        postProgress(payload);
        if (group.value.areSeveral()) {
            for (auto uid = group.value.begin(); uid != group.value.end(); ++uid) {
                duplicates_.emplace_back(*uid);
                rowPositions_.push_back(static_cast<std::uint32_t>(uid.position()));
            }
        }
    }

    contactGroups_ = std::move(groups);
    markDeletedContacts();
    undo.dismiss();
    unlock();
    postFinished(kJobFinding);
}

void ContactsParser::markDeletedContacts()
{
    for (const auto& group : contactGroups_) {
        if (!group.value.areSeveral()) {
            continue;
        }
        bool kept = false;
        for (auto uid = group.value.begin(); uid != group.value.end(); ++uid) {
            const auto position = positionNow(uid.position(), *uid);
            if (position == Contacts::kNowhere) {
                continue;
            }
            auto& record = *contacts_.at(position);
            if (!kept && hasPhoneNumber(record)) {
                kept = true;
            } else {
                record.setChecked(true);
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
        const Payload payload = progress;

        const auto removals = removalsOf(book.people(), uids);
        forget(removals);

        progress->total = static_cast<std::int32_t>(removals.size());
        std::int32_t counter = 0;
        for (const auto& removal : removals) {
            progress->current = counter;
            postProgress(payload);
            book.removeRecord(*removal.person);
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

std::vector<ContactsParser::Removal> ContactsParser::removalsOf(std::span<const Person> people,
                                                                const Uids& uids)
{
    const UidSet named(uids);
    std::vector<Removal> removals;
    visitWithLookAhead<std::uint64_t>(
        people.size(),
        [&](std::size_t i, std::uint64_t& hash) {
            hash = TextIndex::hashOf(people[i].uid);
            named.prefetch(hash);
        },
        [&](std::size_t i, std::uint64_t hash) {
            if (named.contains(people[i].uid, hash)) {
                removals.push_back({&people[i], hash});
            }
        });
    return removals;
}

std::size_t ContactsParser::positionNow(std::size_t position, std::string_view uid) const
{
    const bool isThere = contactGroups_.areOf(contacts_) && contacts_.at(position) != nullptr;
    // Somebody who was not there may have been stored since.
    return isThere ? position : contacts_.positionOf(uid);
}

void ContactsParser::forget(std::span<const Removal> removals)
{
    std::vector<bool> isRemoved(contacts_.positions());
    std::unordered_set<std::string_view, TextHash> unknown;
    visitWithLookAhead<int>(
        removals.size(),
        [&](std::size_t i, int& /*nothing*/) { contacts_.prefetch(removals[i].hash); },
        [&](std::size_t i, int /*nothing*/) {
            const auto uid = removals[i].person->uid;
            const auto position = contacts_.positionOf(uid, removals[i].hash);
            if (position == Contacts::kNowhere) {
                unknown.insert(uid);
            } else {
                isRemoved[position] = true;
            }
        });

    // In one sweep: row by row, tens of thousands of people would take minutes.
    std::size_t rows = 0;
    for (std::size_t row = 0; row < duplicates_.size(); ++row) {
        const auto position = positionNow(rowPositions_[row], duplicates_[row]);
        if (position == Contacts::kNowhere ? unknown.contains(duplicates_[row])
                                           : isRemoved[position]) {
            continue;
        }
        if (rows != row) {
            duplicates_[rows] = std::move(duplicates_[row]);
            rowPositions_[rows] = rowPositions_[row];
        }
        ++rows;
    }
    duplicates_.resize(rows);
    rowPositions_.resize(rows);

    for (std::size_t position = 0; position < isRemoved.size(); ++position) {
        if (isRemoved[position]) {
            contacts_.eraseAt(position);
        }
    }
}

void ContactsParser::postMessage(std::string_view text)
{
    NotificationCenter::defaultCenter().postText(kMsgShowMessage, this, text);
}

void ContactsParser::postProgress(const Payload& progress)
{
    NotificationCenter::defaultCenter().postNotification(kMsgProgress, this, progress);
}

void ContactsParser::postFinished(std::string_view job)
{
    NotificationCenter::defaultCenter().postText(kMsgFinished, this, job);
}

}  // namespace dunmora
