#pragma once

#include "platform/AddressBook.h"

#include <memory>
#include <utility>

namespace dunmora {

/// An address book that is read as it is and takes every change without making it.
class DryRunAddressBook final : public AddressBook {
public:
    explicit DryRunAddressBook(std::unique_ptr<AddressBook> book) : book_(std::move(book)) {}

    std::span<const Person> readPeople() override { return book_->readPeople(); }
    std::span<const Person> people() override { return book_->people(); }
    void removeRecord(const Person& /*person*/) override {}
    void save() override {}
    void checkBackUp(std::span<const Person* const> people) const override
    {
        book_->checkBackUp(people);
    }
    void backUp(std::span<const Person* const> /*people*/,
                const std::filesystem::path& /*file*/) override
    {
    }
    ReadingNotes notes() const override { return book_->notes(); }

private:
    std::unique_ptr<AddressBook> book_;
};

}  // namespace dunmora
