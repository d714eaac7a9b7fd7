#pragma once

#include "platform/AddressBook.h"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace dunmora::test {

/// A person with texts of its own, every field filled; a test changes the field that matters.
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
class FakeAddressBook final : public AddressBook {
public:
    FakeAddressBook() = default;
    explicit FakeAddressBook(std::vector<FakePerson> people) : stored_(std::move(people)) {}

    std::span<const Person> readPeople() override;
    std::span<const Person> people() override;
    void removeRecord(const Person& person) override;
    void save() override;
    void checkBackUp(std::span<const Person* const> /*people*/) const override { onCheckBackUp(); }
    void backUp(std::span<const Person* const> people, const std::filesystem::path& file) override;
    ReadingNotes notes() const override { return readingNotes; }

    /// The uids of who is in the book, in its order.
    std::vector<std::string> storedUids() const;
    /// Takes someone out behind the program's back, as another program would.
    void removeBehindTheBack(const std::string& uid);

    std::size_t savesAsked() const { return savesAsked_; }
    /// How many saves changed the book.
    std::size_t writes() const { return writes_; }

    /// What the book says about its readings.
    ReadingNotes readingNotes;

    /// Called before each step, such as to fail there.
    std::function<void()> onRead = [] {};
    std::function<void()> onRemove = [] {};
    std::function<void()> onSave = [] {};
    std::function<void()> onCheckBackUp = [] {};

private:
    std::vector<FakePerson> stored_;
    // What the last listing handed out stays readable until the next one.
    std::vector<FakePerson> listed_;
    std::vector<std::vector<LabelledPhone>> listedPhones_;
    std::vector<Person> people_;
    std::vector<std::string> pending_;
    std::size_t savesAsked_ = 0;
    std::size_t writes_ = 0;
};

}  // namespace dunmora::test
