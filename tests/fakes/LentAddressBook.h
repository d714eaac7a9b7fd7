#pragma once

#include "platform/AddressBook.h"

namespace dunmora::test {

/// Hands the test's own address book to a program that wants to own one.
class LentAddressBook final : public AddressBook {
public:
    explicit LentAddressBook(AddressBook& book) : book_(book) {}

    std::span<const Person> readPeople() override { return book_.readPeople(); }
    std::span<const Person> people() override { return book_.people(); }
    void removeRecord(const Person& person) override { book_.removeRecord(person); }
    void save() override { book_.save(); }
    void checkBackUp(std::span<const Person* const> people) const override
    {
        book_.checkBackUp(people);
    }
    void backUp(std::span<const Person* const> people, const std::filesystem::path& file) override
    {
        book_.backUp(people, file);
    }
    ReadingNotes notes() const override { return book_.notes(); }

private:
    AddressBook& book_;
};

}  // namespace dunmora::test
