#include "adapters/vcard/VCardAddressBook.h"

#include "adapters/vcard/BookReading.h"
#include "platform/PlatformError.h"

#include <utility>

namespace dunmora {

VCardAddressBook::VCardAddressBook(std::filesystem::path path) : path_(std::move(path)) {}

VCardAddressBook::~VCardAddressBook() = default;

std::span<const Person> VCardAddressBook::readPeople()
{
    // The old reading goes first: two of a large book need not fit into the memory.
    reading_.reset();
    reading_ = std::make_unique<BookReading>(path_);
    return reading_->people();
}

std::span<const Person> VCardAddressBook::people()
{
    return reading_ ? reading_->people() : readPeople();
}

void VCardAddressBook::removeRecord(const Person& person)
{
    listing().removeRecord(person);
}

void VCardAddressBook::save()
{
    if (reading_) {
        reading_->save();
    }
}

void VCardAddressBook::checkBackUp(std::span<const Person* const> people) const
{
    listing().checkBackUp(people);
}

void VCardAddressBook::backUp(std::span<const Person* const> people,
                              const std::filesystem::path& file)
{
    listing().backUp(people, file);
}

ReadingNotes VCardAddressBook::notes() const
{
    return reading_ ? reading_->notes() : ReadingNotes();
}

BookReading& VCardAddressBook::listing() const
{
    // Reading here would be wrong: where the people stand whom the caller has from a listing that
    // is gone, others may stand now.
    if (!reading_) {
        throw PlatformError("That person is not in the address book.");
    }
    return *reading_;
}

}  // namespace dunmora
