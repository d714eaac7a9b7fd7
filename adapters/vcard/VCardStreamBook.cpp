#include "adapters/vcard/VCardStreamBook.h"

#include "adapters/vcard/VCardBook.h"
#include "platform/PlatformError.h"
#include "text/DisplayText.h"

#include <array>
#include <utility>

namespace dunmora {

VCardStreamBook::VCardStreamBook(PersonSource source, Read read, std::uintmax_t largest)
    : source_(std::move(source)), read_(std::move(read)), largest_(largest)
{
}

VCardStreamBook::~VCardStreamBook() = default;

std::span<const Person> VCardStreamBook::people()
{
    if (!book_) {
        book_ = std::make_unique<VCardBook>(source_, read_(largest_));
    }
    return book_->people();
}

void VCardStreamBook::checkWritable(std::span<const std::string> uids) const
{
    if (!uids.empty()) {
        throw PlatformError(quotedText(source_.name) + " cannot be changed.");
    }
}

void VCardStreamBook::removeRecord(const Person& person)
{
    checkWritable(std::array{std::string(person.uid)});
}

ReadingNotes VCardStreamBook::notes() const
{
    return book_ ? book_->notes() : ReadingNotes();
}

std::string VCardStreamBook::cards(std::span<const Person* const> people) const
{
    if (!book_) {
        throw PlatformError("That person is not in the address book.");
    }
    return book_->cards(people);
}

std::optional<PersonCard> VCardStreamBook::card(std::string_view uid) const
{
    return book_ ? book_->card(uid) : std::nullopt;
}

bool VCardStreamBook::compareStored(std::span<const std::string> uids,
                                    CardDifferences& differences) const
{
    return book_ && book_->compareStored(uids, differences);
}

std::optional<std::vector<CardProperty>>
VCardStreamBook::propertiesNamed(std::string_view uid, std::span<const std::string> names) const
{
    return book_ ? book_->propertiesNamed(uid, names) : std::nullopt;
}

}  // namespace dunmora
