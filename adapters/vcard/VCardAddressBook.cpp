#include "adapters/vcard/VCardAddressBook.h"

#include "adapters/vcard/VCardBook.h"
#include "platform/PlatformError.h"

#include <utility>

namespace dunmora {

VCardAddressBook::VCardAddressBook(std::filesystem::path path, std::uintmax_t largest)
    : path_(std::move(path)), largest_(largest)
{
}

VCardAddressBook::~VCardAddressBook() = default;

std::span<const Person> VCardAddressBook::readPeople()
{
    // Frees the old book first, because two large ones may not fit in memory.
    book_.reset();
    book_ = std::make_unique<VCardBook>(path_, largest_);
    return book_->people();
}

std::span<const Person> VCardAddressBook::people()
{
    return book_ ? book_->people() : readPeople();
}

void VCardAddressBook::removeRecord(const Person& person)
{
    listing().removeRecord(person);
}

void VCardAddressBook::save()
{
    if (book_) {
        book_->save();
    }
}

std::string VCardAddressBook::cards(std::span<const Person* const> people) const
{
    return listing().cards(people);
}

std::optional<PersonCard> VCardAddressBook::card(std::string_view uid) const
{
    return book_ ? book_->card(uid) : std::nullopt;
}

ReadingNotes VCardAddressBook::notes() const
{
    return book_ ? book_->notes() : ReadingNotes();
}

VCardBook& VCardAddressBook::listing() const
{
    // Reading here would be wrong: the caller's people come from a listing that no longer exists.
    if (!book_) {
        throw PlatformError("That person is not in the address book.");
    }
    return *book_;
}

}  // namespace dunmora
