#include "tests/fakes/FakeAddressBook.h"

#include "platform/PlatformError.h"
#include "tests/fakes/FakeCard.h"

#include <algorithm>
#include <functional>
#include <memory>

namespace dunmora::test {

namespace {

bool contains(const std::vector<std::string>& uids, const std::string& uid)
{
    return std::find(uids.begin(), uids.end(), uid) != uids.end();
}

}  // namespace

std::span<const Person> FakeAddressBook::readPeople()
{
    ++readings_;
    return list();
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
                          person.modified, phones});
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
    const auto removals = std::exchange(pending_, {});
    if (removals.empty()) {
        return;
    }
    onSave();
    std::erase_if(stored_, [&](const auto& person) { return contains(removals, person.uid); });
    ++writes_;
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
    return {borrowed, borrowed};
}

}  // namespace dunmora::test
