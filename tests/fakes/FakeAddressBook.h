#pragma once

#include "platform/AddressBook.h"
#include "platform/CardSource.h"
#include "platform/OpenedBook.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
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
};

/// A live address book in memory: every listing shows what is in it now.
class FakeAddressBook final : public AddressBook, public CardSource {
public:
    FakeAddressBook() = default;
    explicit FakeAddressBook(std::vector<FakePerson> people) : stored_(std::move(people)) {}

    std::span<const Person> readPeople() override;
    std::span<const Person> people() override;
    void removeRecord(const Person& person) override;
    void save() override;
    ReadingNotes notes() const override { return readingNotes; }
    std::string cards(std::span<const Person* const> people) const override;

    /// The uids of the people in the book, in its order.
    std::vector<std::string> storedUids() const;
    /// Removes a person without the program's knowledge, as another program would.
    void removeBehindTheBack(const std::string& uid);

    /// The numbers of calls of `readPeople` and of `people`.
    std::size_t readings() const { return readings_; }
    std::size_t listings() const { return listings_; }
    std::size_t savesAsked() const { return savesAsked_; }
    /// How many saves changed the book.
    std::size_t writes() const { return writes_; }

    /// The notes that the book reports.
    ReadingNotes readingNotes;

    /// Called before each step, such as to fail there.
    std::function<void()> onRead = [] {};
    std::function<void()> onRemove = [] {};
    std::function<void()> onSave = [] {};
    std::function<void()> onCards = [] {};

private:
    std::span<const Person> list();
    bool isListed(const Person& person) const;

    std::vector<FakePerson> stored_;
    // The views of the last listing stay valid until the next one.
    std::vector<FakePerson> listed_;
    std::vector<std::vector<LabelledPhone>> listedPhones_;
    std::vector<Person> people_;
    std::vector<std::string> pending_;
    std::size_t readings_ = 0;
    std::size_t listings_ = 0;
    std::size_t savesAsked_ = 0;
    std::size_t writes_ = 0;
};

/// Opens the book for a program; the test keeps owning it.
OpenedBook lent(FakeAddressBook& book);

}  // namespace dunmora::test
