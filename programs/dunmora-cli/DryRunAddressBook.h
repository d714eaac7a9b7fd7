#pragma once

#include "platform/AddressBook.h"

#include <memory>
#include <utility>

namespace dunmora {

/// Reads another address book and ignores every change.
class DryRunAddressBook final : public AddressBook {
public:
    explicit DryRunAddressBook(std::shared_ptr<AddressBook> book) : book_(std::move(book)) {}

    std::span<const Person> readPeople() override { return book_->readPeople(); }
    std::span<const Person> people() override { return book_->people(); }
    void checkWritable(std::span<const std::string> /*uids*/) const override {}
    void removeRecord(const Person& /*person*/) override {}
    void save() override {}
    ReadingNotes notes() const override { return book_->notes(); }

private:
    std::shared_ptr<AddressBook> book_;
};

}  // namespace dunmora
