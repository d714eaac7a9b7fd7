#include "adapters/macos/MacAddressBook.h"

#include "adapters/macos/FrameworkBook.h"
#include "adapters/macos/FrameworkCall.h"
#include "adapters/vcard/CardProperties.h"
#include "platform/PlatformError.h"
#include "text/TextHash.h"

#include <algorithm>
#include <cstddef>
#include <unordered_map>
#include <utility>

namespace dunmora {

namespace {

constexpr std::string_view kBook = "The address book of this Mac";
constexpr std::string_view kNothingMore =
    " The removals cannot be undone, so Dunmora deletes nothing more. Restart Dunmora.";

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

/// The person's name for the user.
std::string nameOf(const FrameworkPerson& person)
{
    std::string name = person.firstName.value_or("");
    const auto& lastName = person.lastName.value_or("");
    name += (name.empty() || lastName.empty() ? "" : " ") + lastName;
    if (name.empty()) {
        name = person.nickname.value_or("");
    }
    return "“" + (name.empty() ? person.uid : name) + "”";
}

PeopleListing listPeople()
{
    // The framework autoreleases objects for everything it returns; a pool per batch keeps few
    // alive.
    constexpr std::size_t kPeoplePerPool = 256;
    std::vector<FrameworkPerson> people;
    callFramework(kBook, [&] {
        const FrameworkBook book;
        requireBook(book);
        people.reserve(book.size());
        while (people.size() < book.size()) {
            callObjectiveC(kBook, [&] {
                const auto end = std::min(people.size() + kPeoplePerPool, book.size());
                while (people.size() < end) {
                    people.push_back(book.person(people.size()));
                }
            });
        }
    });
    return PeopleListing(std::move(people), macSource());
}

/// The positions of these people in the book, in its order; those who are gone are omitted.
std::vector<std::pair<std::size_t, const FrameworkPerson*>>
find(const FrameworkBook& book, const std::vector<const FrameworkPerson*>& wanted)
{
    std::unordered_map<std::string_view, const FrameworkPerson*, TextHash> byUid;
    for (const auto* person : wanted) {
        byUid.emplace(person->uid, person);
    }
    std::vector<std::pair<std::size_t, const FrameworkPerson*>> found;
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

void requireUnchanged(const FrameworkBook& book,
                      const std::vector<std::pair<std::size_t, const FrameworkPerson*>>& found)
{
    for (const auto& [index, person] : found) {
        if (book.person(index) != *person) {
            throw PlatformError("Nobody was deleted: " + nameOf(*person) +
                                " has changed since the address book was read. " +
                                std::string(kReloadAndTryAgain));
        }
    }
}

}  // namespace

MacAddressBook::StrandedRemovals& MacAddressBook::strandedRemovalsOfTheProcess()
{
    static StrandedRemovals stranded = false;
    return stranded;
}

MacAddressBook::MacAddressBook(StrandedRemovals& stranded) : stranded_(stranded) {}

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
        refuseWhereRemovalsAreStranded();
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
    refuseWhereRemovalsAreStranded();
    std::vector<const FrameworkPerson*> people;
    people.reserve(removals.size());
    for (const auto& uid : removals) {
        people.push_back(&asReviewed(uid));
    }
    try {
        callFramework(kBook, [&] {
            FrameworkBook book;
            requireBook(book);
            const auto found = find(book, people);
            requireUnchanged(book, found);
            if (found.empty()) {
                return;
            }
            // Any early exit from here on leaves removals in the framework.
            stranded_ = true;
            for (const auto& [index, person] : found) {
                if (!book.removeRecord(index)) {
                    throw PlatformError("macOS did not remove " + nameOf(*person) +
                                        " from the address book. Nobody was deleted.");
                }
            }
            if (!book.save()) {
                throw PlatformError(std::string(kBook) + " could not be saved.");
            }
            stranded_ = false;
        });
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
            "A deletion could not be saved. Its people are not shown, although they may still be "
            "in the address book. Restart Dunmora to see them.");
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

void MacAddressBook::refuseWhereRemovalsAreStranded() const
{
    if (stranded_) {
        throw PlatformError("An earlier deletion could not be saved." + std::string(kNothingMore));
    }
}

std::string MacAddressBook::cards(std::span<const Person* const> people) const
{
    std::vector<const FrameworkPerson*> wanted;
    for (const auto* view : people) {
        wanted.push_back(&asReviewed(listed(*view).uid));
    }
    std::unordered_map<std::string_view, std::string, TextHash> cards;
    callFramework(kBook, [&] {
        const FrameworkBook book;
        requireBook(book);
        const auto found = find(book, wanted);
        requireUnchanged(book, found);
        for (const auto& [index, person] : found) {
            callObjectiveC(kBook, [&, index = index, person = person] {
                auto card = book.vCard(index);
                // A card in another encoding is refused too: the file must be one text.
                if (!card || !card->starts_with("BEGIN:VCARD")) {
                    throw PlatformError(nameOf(*person) + " cannot be written as a vCard.");
                }
                if (!card->ends_with('\n')) {
                    *card += "\r\n";
                }
                cards.emplace(person->uid, std::move(*card));
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

std::optional<PersonCard> MacAddressBook::card(std::string_view uid) const
{
    const auto* const reviewed = reading_.find(std::string(uid));
    if (reviewed == nullptr) {
        return std::nullopt;
    }
    std::optional<FrameworkCard> current;
    callFramework(kBook, [&] { current = FrameworkBook::card(reviewed->uid); });
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
