#include "tests/fakes/FakeAddressBook.h"

#include "platform/PlatformError.h"

#include <algorithm>
#include <fstream>

namespace dunmora::test {

namespace {

bool contains(const std::vector<std::string>& uids, const std::string& uid)
{
    return std::find(uids.begin(), uids.end(), uid) != uids.end();
}

}  // namespace

std::span<const Person> FakeAddressBook::readPeople()
{
    return people();
}

std::span<const Person> FakeAddressBook::people()
{
    pending_.clear();
    onRead();
    listed_ = stored_;
    listedPhones_.assign(listed_.size(), {});
    people_.clear();
    for (std::size_t i = 0; i < listed_.size(); ++i) {
        const auto& person = listed_[i];
        std::optional<PhoneList> phones;
        if (person.phones) {
            for (const auto& phone : *person.phones) {
                listedPhones_[i].push_back({phone.label, phone.value});
            }
            phones = listedPhones_[i];
        }
        people_.push_back({person.uid, person.firstName, person.lastName, person.nickname,
                           person.modified, phones});
    }
    return people_;
}

void FakeAddressBook::removeRecord(const Person& person)
{
    try {
        onRemove();
        if (&person < people_.data() || &person >= people_.data() + people_.size()) {
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

void FakeAddressBook::backUp(std::span<const Person* const> people,
                             const std::filesystem::path& file)
{
    if (std::filesystem::exists(file)) {
        throw PlatformError("“" + file.string() + "” exists already.");
    }
    std::ofstream out(file);
    for (const auto* person : people) {
        out << "BEGIN:VCARD\r\nVERSION:3.0\r\nUID:" << person->uid << "\r\nEND:VCARD\r\n";
    }
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

}  // namespace dunmora::test
