#pragma once

#include "platform/AddressBook.h"

#include <memory>
#include <utility>

namespace dunmora {

/// The address book that the user has chosen last; until then it is none.
class SelectedAddressBook final : public AddressBook {
public:
    SelectedAddressBook();
    ~SelectedAddressBook() override;
    SelectedAddressBook(const SelectedAddressBook&) = delete;
    SelectedAddressBook& operator=(const SelectedAddressBook&) = delete;

    /// Lets go of the address book in hand, and of the views of its people, for this one.
    /// Thread: the main thread, while no job runs.
    void select(std::unique_ptr<AddressBook> book) { book_ = std::move(book); }

    std::span<const Person> readPeople() override { return book_->readPeople(); }
    std::span<const Person> people() override { return book_->people(); }
    void removeRecord(const Person& person) override { book_->removeRecord(person); }
    void save() override { book_->save(); }
    void checkBackUp(std::span<const Person* const> people) const override
    {
        book_->checkBackUp(people);
    }
    void backUp(std::span<const Person* const> people, const std::filesystem::path& file) override
    {
        book_->backUp(people, file);
    }
    ReadingNotes notes() const override { return book_->notes(); }

private:
    std::unique_ptr<AddressBook> book_;
};

}  // namespace dunmora
