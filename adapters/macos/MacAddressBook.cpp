#include "adapters/macos/MacAddressBook.h"

#include "adapters/macos/FrameworkBook.h"
#include "adapters/macos/FrameworkCall.h"
#include "adapters/vcard/CardProperties.h"
#include "platform/PlatformError.h"
#include "text/DisplayText.h"
#include "text/TextHash.h"

#include <algorithm>
#include <cstddef>
#include <unordered_map>
#include <utility>

namespace dunmora {

namespace {

constexpr std::string_view kNothingMore =
    " The change cannot be undone, so Dunmora changes nothing more. Restart Dunmora.";

const PersonSource& macSource()
{
    static const PersonSource source{std::string(kMacAddressBookName), "Contacts"};
    return source;
}

void requireBook(const FrameworkBook& book)
{
    if (!book.isThere()) {
        throw PlatformError(
            "macOS does not allow Dunmora to use the address book. Allow access for Dunmora, or "
            "for its terminal, in System Settings > Privacy & Security > Contacts, and restart "
            "Dunmora.");
    }
}

/// What to call the person in a message.
std::string plainNameOf(const FrameworkPerson& person)
{
    std::string name = person.firstName.value_or("");
    const auto& lastName = person.lastName.value_or("");
    name += (name.empty() || lastName.empty() ? "" : " ") + lastName;
    if (name.empty()) {
        name = person.nickname.value_or("");
    }
    return name.empty() ? person.uid : name;
}

std::string nameOf(const FrameworkPerson& person)
{
    return quotedText(plainNameOf(person));
}

/// The person's vCard, with a line end after it.
std::string cardAt(const FrameworkBook& book, std::size_t index, const FrameworkPerson& person)
{
    auto card = book.vCard(index);
    // A card in another encoding is refused too: a file of cards must be one text.
    if (!card || !card->starts_with("BEGIN:VCARD")) {
        throw PlatformError(nameOf(person) + " cannot be written as a vCard.");
    }
    if (!card->ends_with('\n')) {
        *card += "\r\n";
    }
    return *std::move(card);
}

PeopleListing listPeople()
{
    // The framework autoreleases objects for everything it returns; a pool per batch keeps few
    // alive.
    constexpr std::size_t kPeoplePerPool = 256;
    std::vector<FrameworkPerson> people;
    callFramework(kMacBookTitle, [&] {
        const FrameworkBook book;
        requireBook(book);
        people.reserve(book.size());
        while (people.size() < book.size()) {
            callObjectiveC(kMacBookTitle, [&] {
                const auto end = std::min(people.size() + kPeoplePerPool, book.size());
                while (people.size() < end) {
                    people.push_back(book.person(people.size()));
                }
            });
        }
    });
    return {std::move(people), macSource()};
}

/// The positions of people in the book, in its order.
using Found = std::vector<std::pair<std::size_t, const FrameworkPerson*>>;

/// Those who are gone are omitted.
Found find(const FrameworkBook& book, const std::vector<const FrameworkPerson*>& wanted)
{
    std::unordered_map<std::string_view, const FrameworkPerson*, TextHash> byUid;
    for (const auto* person : wanted) {
        byUid.emplace(person->uid, person);
    }
    Found found;
    for (std::size_t i = 0; i < book.size() && !byUid.empty(); ++i) {
        // As in the listing, the first person with a uid is the one who has it.
        const auto match = byUid.find(book.uid(i));
        if (match != byUid.end()) {
            found.emplace_back(i, match->second);
            byUid.erase(match);
        }
    }
    return found;
}

void requireUnchanged(const FrameworkBook& book, const Found& found)
{
    for (const auto& [index, person] : found) {
        if (book.person(index) != *person) {
            throw PlatformError("Nobody was deleted: " + nameOf(*person) +
                                " has changed since the address book was read. " +
                                std::string(kReloadAndTryAgain));
        }
    }
}

/// What puts these people back.
std::vector<MacCard> cardsOf(const FrameworkBook& book, const Found& found)
{
    std::vector<MacCard> cards;
    cards.reserve(found.size());
    for (const auto& [index, person] : found) {
        callObjectiveC(kMacBookTitle, [&, index = index, person = person] {
            cards.push_back({{person->uid},
                             cardAt(book, index, *person),
                             plainNameOf(*person),
                             book.groups(index)});
        });
    }
    return cards;
}

/// The uids of everyone else.
std::unordered_set<std::string, TextHash> uidsWithout(const FrameworkBook& book, const Found& found)
{
    std::unordered_set<std::string, TextHash> uids;
    uids.reserve(book.size());
    for (std::size_t i = 0; i < book.size(); ++i) {
        uids.insert(book.uid(i));
    }
    for (const auto& [index, person] : found) {
        uids.erase(person->uid);
    }
    return uids;
}

}  // namespace

MacAddressBook::StrandedChanges& MacAddressBook::strandedChangesOfTheProcess()
{
    static StrandedChanges stranded = false;
    return stranded;
}

MacAddressBook::MacAddressBook(StrandedChanges& stranded) : stranded_(stranded) {}

std::span<const Person> MacAddressBook::readPeople()
{
    removals_.clear();
    auto reading = listPeople();
    relisted_.reset();
    reading_ = std::move(reading);
    return reading_.people();
}

std::span<const Person> MacAddressBook::people()
{
    removals_.clear();
    relisted_ = listPeople();
    return relisted_->people();
}

void MacAddressBook::removeRecord(const Person& person)
{
    try {
        refuseWhereChangesAreStranded();
        removals_.push_back(listed(person).uid);
    } catch (...) {
        removals_.clear();
        throw;
    }
}

void MacAddressBook::save()
{
    const auto removals = std::exchange(removals_, {});
    if (removals.empty()) {
        return;
    }
    std::vector<const FrameworkPerson*> people;
    people.reserve(removals.size());
    for (const auto& uid : removals) {
        people.push_back(&asReviewed(uid));
    }
    Deletion deletion;
    change([&] {
        FrameworkBook book;
        requireBook(book);
        const auto found = find(book, people);
        requireUnchanged(book, found);
        if (found.empty()) {
            return;
        }
        Deletion prepared{cardsOf(book, found), uidsWithout(book, found)};
        // Any early exit from here on leaves removals in the framework.
        stranded_ = true;
        for (const auto& [index, person] : found) {
            if (!book.removeRecord(index)) {
                throw PlatformError("macOS did not remove " + nameOf(*person) +
                                    " from the address book. Nobody was deleted.");
            }
        }
        if (!book.save()) {
            throw PlatformError(std::string(kMacBookTitle) + " could not be saved.");
        }
        stranded_ = false;
        deletion = std::move(prepared);
    });
    if (!deletion.people.empty()) {
        deletions_.push_back(std::move(deletion));
    }
}

/// Runs work on the framework's thread that changes the address book.
void MacAddressBook::change(const std::function<void()>& work) const
{
    refuseWhereChangesAreStranded();
    try {
        callFramework(kMacBookTitle, work);
    } catch (const PlatformError& error) {
        if (stranded_) {
            throw PlatformError(std::string(error.what()) + std::string(kNothingMore));
        }
        throw;
    }
}

ReadingNotes MacAddressBook::notes() const
{
    ReadingNotes notes;
    notes.cardsSkipped = reading_.skipped().size();
    for (const auto& person : reading_.skipped()) {
        notes.remarks.push_back(
            nameOf(person) +
            " was skipped: this person has no unique identifier in the address book.");
    }
    if (stranded_) {
        notes.remarks.emplace_back(
            "A change could not be saved. The address book may hold other people than those shown "
            "here. Restart Dunmora to see them.");
    }
    return notes;
}

/// The person as the user reviewed them, or as the last listing has them if they are new.
const FrameworkPerson& MacAddressBook::asReviewed(const std::string& uid) const
{
    const auto* const person = reading_.find(uid);
    return person != nullptr ? *person : *lastListing().find(uid);
}

const FrameworkPerson& MacAddressBook::listed(const Person& view) const
{
    const auto* const person = lastListing().find(view);
    if (person == nullptr) {
        throw PlatformError("That person is not in the address book.");
    }
    return *person;
}

void MacAddressBook::refuseWhereChangesAreStranded() const
{
    if (stranded_) {
        throw PlatformError("An earlier change could not be saved." + std::string(kNothingMore));
    }
}

std::string MacAddressBook::cards(std::span<const Person* const> people) const
{
    std::vector<const FrameworkPerson*> wanted;
    for (const auto* view : people) {
        wanted.push_back(&asReviewed(listed(*view).uid));
    }
    std::unordered_map<std::string_view, std::string, TextHash> cards;
    callFramework(kMacBookTitle, [&] {
        const FrameworkBook book;
        requireBook(book);
        const auto found = find(book, wanted);
        requireUnchanged(book, found);
        for (const auto& [index, person] : found) {
            callObjectiveC(kMacBookTitle, [&, index = index, person = person] {
                cards.emplace(person->uid, cardAt(book, index, *person));
            });
        }
    });
    std::string content;
    for (const auto* person : wanted) {
        const auto card = cards.find(person->uid);
        if (card == cards.end()) {
            throw PlatformError(nameOf(*person) + " is no longer in the address book.");
        }
        content += card->second;
    }
    return content;
}

std::size_t MacAddressBook::lastRemoved() const
{
    return deletions_.empty() ? 0 : deletions_.back().people.size();
}

std::string MacAddressBook::lastRemovedCards() const
{
    std::string content;
    if (!deletions_.empty()) {
        for (const auto& person : deletions_.back().people) {
            content += person.card;
        }
    }
    return content;
}

Restoration MacAddressBook::restoreLast()
{
    if (deletions_.empty()) {
        return {};
    }
    auto& deletion = deletions_.back();
    // Those who stayed, and those whom we have put back, are other people, whatever they hold.
    const auto canBeBack = [&](const std::string& uid) {
        return !deletion.others.contains(uid) && !returned_.contains(uid);
    };
    Restoration result;
    change([&] {
        FrameworkBook book;
        requireBook(book);
        MacRestoration restoration(book, stranded_);
        deletion.people = restoration.restore(deletion.people, canBeBack, Mode::Write);
        returned_.insert(restoration.added().begin(), restoration.added().end());
        result = restoration.result();
    });
    if (deletion.people.empty()) {
        deletions_.pop_back();
    }
    return result;
}

Restoration MacAddressBook::restore(std::string_view backup, Mode mode)
{
    Restoration notes;
    const auto people = readMacBackup(backup, notes);
    Restoration result;
    change([&] {
        FrameworkBook book;
        requireBook(book);
        MacRestoration restoration(book, stranded_);
        restoration.restore(
            people, [](const std::string& /*uid*/) { return true; }, mode);
        result = restoration.result();
    });
    const auto append = [](std::vector<std::string>& texts, const std::vector<std::string>& more) {
        texts.insert(texts.end(), more.begin(), more.end());
    };
    append(result.failures, notes.failures);
    append(result.remarks, notes.remarks);
    return result;
}

std::optional<PersonCard> MacAddressBook::card(std::string_view uid) const
{
    const auto* const reviewed = reading_.find(std::string(uid));
    if (reviewed == nullptr) {
        return std::nullopt;
    }
    std::optional<FrameworkCard> current;
    callFramework(kMacBookTitle, [&] { current = FrameworkBook::card(reviewed->uid); });
    // Somebody who has changed since is another card than the reviewed one.
    if (!current || !current->vCard || current->person != *reviewed) {
        return std::nullopt;
    }
    auto properties = readProperties(*current->vCard, CardReader::Text::Utf8);
    if (!properties) {
        return std::nullopt;
    }
    return PersonCard{*std::move(properties), std::move(current->groups), macSource()};
}

}  // namespace dunmora
