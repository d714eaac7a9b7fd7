#pragma once

#include "platform/AddressBook.h"

namespace dunmora {

/// Stands where no address book has been chosen yet: whoever wants to read it is told how to choose
/// one.
class NoAddressBook final : public AddressBook {
public:
    std::span<const Person> readPeople() override;
    std::span<const Person> people() override;
    void removeRecord(const Person& person) override;
    void save() override;
    void checkBackUp(std::span<const Person* const> people) const override;
    void backUp(std::span<const Person* const> people, const std::filesystem::path& file) override;
    ReadingNotes notes() const override { return {}; }
};

}  // namespace dunmora
