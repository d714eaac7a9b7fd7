#include "tests/fakes/FakeAddressBook.h"

#include "platform/PlatformError.h"
#include "tests/fakes/FakeCard.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>

namespace dunmora::test {

namespace {

bool contains(const std::vector<std::string>& uids, const std::string& uid)
{
    return std::find(uids.begin(), uids.end(), uid) != uids.end();
}

/// Returns whether the person is in the book afterwards.
bool add(const FakePerson& person, std::vector<FakePerson>& book, Restoration& result)
{
    const auto other = std::find_if(book.begin(), book.end(),
                                    [&](const auto& each) { return each.uid == person.uid; });
    if (other == book.end()) {
        ++result.restored;
        book.push_back(person);
        return true;
    }
    if (cardOf(*other) == cardOf(person)) {
        ++result.present;
        return true;
    }
    result.failures.push_back("“" + person.firstName.value_or(person.uid) +
                              "” was not put back: somebody else has the same UID now.");
    return false;
}

}  // namespace

std::span<const Person> FakeAddressBook::readPeople()
{
    ++readings_;
    const auto people = list();
    reviewed_ = listed_;
    return people;
}

std::span<const Person> FakeAddressBook::people()
{
    ++listings_;
    return list();
}

std::span<const Person> FakeAddressBook::list()
{
    pending_.clear();
    onRead();
    listed_ = stored_;
    listedPhones_.assign(listed_.size(), {});
    // A new vector: a view of the last listing must not show somebody else.
    std::vector<Person> people;
    people.reserve(listed_.size());
    for (std::size_t i = 0; i < listed_.size(); ++i) {
        const auto& person = listed_[i];
        std::optional<PhoneList> phones;
        if (person.phones) {
            for (const auto& phone : *person.phones) {
                listedPhones_[i].push_back({phone.label, phone.value});
            }
            phones = listedPhones_[i];
        }
        people.push_back({person.uid, person.firstName, person.lastName, person.nickname,
                          person.modified, phones, &person.source});
    }
    people_ = std::move(people);
    return people_;
}

void FakeAddressBook::removeRecord(const Person& person)
{
    try {
        onRemove();
        if (!isListed(person)) {
            throw PlatformError("That person is not in the address book.");
        }
    } catch (...) {
        pending_.clear();
        throw;
    }
    pending_.emplace_back(person.uid);
}

void FakeAddressBook::save()
{
    ++savesAsked_;
    auto removals = std::exchange(pending_, {});
    if (removals.empty()) {
        return;
    }
    onSave();
    const auto failsAfter = std::exchange(removalsBeforeFailure, std::nullopt);
    removals.resize(std::min(removals.size(), failsAfter.value_or(removals.size())));
    Deletion deletion;
    std::vector<FakePerson> rest;
    for (std::size_t i = 0; i < stored_.size(); ++i) {
        if (contains(removals, stored_[i].uid)) {
            deletion.people.push_back({i, stored_[i]});
        } else {
            rest.push_back(stored_[i]);
        }
    }
    stored_ = std::move(rest);
    ++writes_;
    if (!deletion.people.empty()) {
        deletion.rest = storedCards();
        deletions_.push_back(std::move(deletion));
    }
    if (failsAfter) {
        throw PlatformError("Not everybody was deleted.");
    }
}

std::string FakeAddressBook::cards(std::span<const Person* const> people) const
{
    onCards();
    std::string content;
    for (const auto* person : people) {
        if (!isListed(*person)) {
            throw PlatformError("That person is not in the address book.");
        }
        content += cardOf(listed_[static_cast<std::size_t>(person - people_.data())]);
    }
    return content;
}

std::string FakeAddressBook::storedCards() const
{
    std::string cards;
    for (const auto& person : stored_) {
        cards += cardOf(person);
    }
    return cards;
}

std::size_t FakeAddressBook::lastRemoved() const
{
    return deletions_.empty() ? 0 : deletions_.back().people.size();
}

std::string FakeAddressBook::lastRemovedCards() const
{
    std::string cards;
    if (!deletions_.empty()) {
        for (const auto& removed : deletions_.back().people) {
            cards += cardOf(removed.person);
        }
    }
    return cards;
}

Restoration FakeAddressBook::restoreLast()
{
    Restoration result;
    if (deletions_.empty()) {
        return result;
    }
    onRestore();
    auto& [people, rest] = deletions_.back();
    if (storedCards() == rest) {
        for (const auto& [place, person] : people) {
            stored_.insert(stored_.begin() + static_cast<std::ptrdiff_t>(place), person);
        }
        result.restored = people.size();
        people.clear();
    } else {
        std::erase_if(people,
                      [&](const auto& removed) { return add(removed.person, stored_, result); });
    }
    writes_ += result.restored > 0 ? 1 : 0;
    if (people.empty()) {
        deletions_.pop_back();
    }
    return result;
}

Restoration FakeAddressBook::restore(std::string_view backup, Mode mode)
{
    const auto people = peopleOf(backup);
    if (people.empty()) {
        throw PlatformError("The backup contains no vCards.");
    }
    onRestore();
    Restoration result;
    auto book = stored_;
    for (const auto& person : people) {
        add(person, book, result);
    }
    if (mode == Mode::Write && result.restored > 0) {
        stored_ = std::move(book);
        ++writes_;
    }
    return result;
}

std::optional<PersonCard> FakeAddressBook::card(std::string_view uid) const
{
    const auto found = std::find_if(reviewed_.begin(), reviewed_.end(),
                                    [&](const FakePerson& person) { return person.uid == uid; });
    return found == reviewed_.end()
               ? std::nullopt
               : std::optional(PersonCard{propertiesOf(*found), found->lists, found->source});
}

bool FakeAddressBook::isListed(const Person& person) const
{
    const std::less<> isBefore;
    const auto* const first = people_.data();
    return !isBefore(&person, first) && isBefore(&person, first + people_.size());
}

std::vector<std::string> FakeAddressBook::storedUids() const
{
    std::vector<std::string> uids;
    for (const auto& person : stored_) {
        uids.push_back(person.uid);
    }
    return uids;
}

void FakeAddressBook::removeBehindTheBack(const std::string& uid)
{
    std::erase_if(stored_, [&](const auto& person) { return person.uid == uid; });
}

OpenedBook lent(FakeAddressBook& book)
{
    const std::shared_ptr<FakeAddressBook> borrowed(std::shared_ptr<void>(), &book);
    return {borrowed, borrowed, borrowed};
}

}  // namespace dunmora::test
