#pragma once

#include "platform/AddressBook.h"
#include "platform/CardRestorer.h"
#include "platform/CardSource.h"
#include "platform/OpenedBook.h"
#include "platform/PersonCard.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace dunmora::test {

/// A person that owns its texts, with every field filled; a test changes the field that matters.
struct FakePerson {
    struct Phone {
        std::optional<std::string> label;
        std::string value;
    };

    std::string uid = "uid-ann";
    std::optional<std::string> firstName = "Ann";
    std::optional<std::string> lastName = "Lee";
    std::optional<std::string> nickname = "Annie";
    std::optional<std::chrono::sys_seconds> modified =
        std::chrono::sys_seconds(std::chrono::seconds(1714557600));  // 2024-05-01 10:00 UTC
    std::optional<std::vector<Phone>> phones = {{{"_$!<Home>!$_", "555-0100"},
                                                 {"_$!<Work>!$_", "555-0101"},
                                                 {"_$!<Mobile>!$_", "555-0102"}}};
    /// What the card holds besides, such as an e-mail address.
    std::vector<CardProperty> properties = {};
    /// The names of the lists that the person is a member of.
    std::vector<std::string> lists = {};
    PersonSource source{"people.vcf", "people.vcf"};
};

/// A live address book in memory: every listing shows what is in it now.
class FakeAddressBook final : public AddressBook, public CardSource, public CardRestorer {
public:
    FakeAddressBook() = default;
    explicit FakeAddressBook(std::vector<FakePerson> people) : stored_(std::move(people)) {}

    std::span<const Person> readPeople() override;
    std::span<const Person> people() override;
    void checkWritable(std::span<const std::string> uids) const override { onCheck(uids); }
    void removeRecord(const Person& person) override;
    void save() override;
    ReadingNotes notes() const override { return readingNotes; }
    std::string cards(std::span<const Person* const> people) const override;
    std::optional<PersonCard> card(std::string_view uid) const override;

    std::size_t deletions() const override { return deletions_.size(); }
    std::size_t lastRemoved() const override;
    std::string lastRemovedCards() const override;
    Restoration restoreLast() override;
    Restoration restore(std::string_view backup, Mode mode) override;

    /// The uids of the people in the book, in its order.
    std::vector<std::string> storedUids() const;
    /// Removes a person without the program's knowledge, as another program would.
    void removeBehindTheBack(const std::string& uid);
    /// Adds a person at the end, as another program would.
    void addBehindTheBack(FakePerson person) { stored_.push_back(std::move(person)); }

    /// The numbers of calls of `readPeople` and of `people`.
    std::size_t readings() const { return readings_; }
    std::size_t listings() const { return listings_; }
    std::size_t savesAsked() const { return savesAsked_; }
    /// How many saves and restorations changed the book.
    std::size_t writes() const { return writes_; }

    /// The notes that the book reports.
    ReadingNotes readingNotes;

    /// Called before each step, such as to fail there.
    std::function<void()> onRead = [] {};
    std::function<void(std::span<const std::string> uids)> onCheck = [](auto /*uids*/) {};
    std::function<void()> onRemove = [] {};
    std::function<void()> onSave = [] {};
    std::function<void()> onCards = [] {};
    std::function<void()> onRestore = [] {};

    /// How many people the next save removes before it fails; by default it does not fail.
    std::optional<std::size_t> removalsBeforeFailure;

private:
    /// What one save removed.
    struct Deletion {
        struct Removed {
            // The index of the person when everybody is back.
            std::size_t place;
            FakePerson person;
        };
        std::vector<Removed> people;
        // The cards that it left.
        std::string rest;
    };

    std::span<const Person> list();
    bool isListed(const Person& person) const;
    std::string storedCards() const;

    std::vector<FakePerson> stored_;
    // The people of the last `readPeople`.
    std::vector<FakePerson> reviewed_;
    // The views of the last listing stay valid until the next one.
    std::vector<FakePerson> listed_;
    std::vector<std::vector<LabelledPhone>> listedPhones_;
    std::vector<Person> people_;
    std::vector<std::string> pending_;
    // The last one is undone first.
    std::vector<Deletion> deletions_;
    std::size_t readings_ = 0;
    std::size_t listings_ = 0;
    std::size_t savesAsked_ = 0;
    std::size_t writes_ = 0;
};

/// Opens the book for a program; the test keeps owning it.
OpenedBook lent(FakeAddressBook& book);

}  // namespace dunmora::test
