#include "adapters/vcard/VCardAddressBook.h"

#include "adapters/vcard/BackupRestoration.h"
#include "adapters/vcard/DeletionUndo.h"
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
    keepRemoved();
    // Frees the old book first, because two large ones may not fit in memory.
    book_.reset();
    isStale_ = false;
    book_ = std::make_unique<VCardBook>(path_, largest_, remaindersOf(deletions_));
    return book_->people();
}

std::span<const Person> VCardAddressBook::people()
{
    return book_ && !isStale_ ? book_->people() : readPeople();
}

void VCardAddressBook::checkWritable(std::span<const std::string> uids) const
{
    listing().checkWritable(uids);
}

void VCardAddressBook::removeRecord(const Person& person)
{
    listing().removeRecord(person);
}

void VCardAddressBook::save()
{
    if (!book_) {
        return;
    }
    // Before the files change, after which nothing may fail.
    auto& deletion = deletions_.emplace_back();
    const auto dropIfEmpty = [&] {
        if (deletion.files.empty()) {
            deletions_.pop_back();
        }
    };
    try {
        book_->save(deletion);
    } catch (...) {
        dropIfEmpty();
        throw;
    }
    dropIfEmpty();
}

std::size_t VCardAddressBook::lastRemoved() const
{
    return deletions_.empty() ? 0 : deletions_.back().people();
}

std::string VCardAddressBook::lastRemovedCards() const
{
    return deletions_.empty() ? std::string() : deletions_.back().cards();
}

Restoration VCardAddressBook::restoreLast()
{
    if (deletions_.empty()) {
        return {};
    }
    keepRemoved();
    auto result = undo(deletions_.back());
    isStale_ = true;
    if (deletions_.back().files.empty()) {
        deletions_.pop_back();
    }
    return result;
}

Restoration VCardAddressBook::restore(std::string_view backup, Mode mode)
{
    keepRemoved();
    auto result = restoreBackup(path_, largest_, remaindersOf(deletions_), backup, mode);
    isStale_ = isStale_ || result.restored > 0;
    return result;
}

std::string VCardAddressBook::cards(std::span<const Person* const> people) const
{
    return listing().cards(people);
}

std::optional<PersonCard> VCardAddressBook::card(std::string_view uid) const
{
    return book_ ? book_->card(uid) : std::nullopt;
}

bool VCardAddressBook::compareStored(std::span<const std::string> uids,
                                     CardDifferences& differences) const
{
    return book_ && book_->compareStored(uids, differences);
}

std::optional<std::vector<CardProperty>>
VCardAddressBook::propertiesNamed(std::string_view uid, std::span<const std::string> names) const
{
    return book_ ? book_->propertiesNamed(uid, names) : std::nullopt;
}

ReadingNotes VCardAddressBook::notes() const
{
    return book_ ? book_->notes() : ReadingNotes();
}

/// Copies what has been removed from the book, which is freed next, or compared with.
void VCardAddressBook::keepRemoved()
{
    for (auto& deletion : deletions_) {
        deletion.copyFromReading();
    }
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
