#pragma once

#include "platform/AddressBook.h"

#include <filesystem>
#include <memory>
#include <span>

namespace dunmora {

class BookReading;

/// An address book of vCard 2.1, 3.0 and 4.0 cards (RFC 2426, RFC 6350): a file of any number of
/// cards, or a folder whose `*.vcf` files (none that begins with a dot) hold them, in file-name
/// order.
///
/// A deletion cuts the bytes of the removed cards out of the reading that the user reviewed and
/// nothing else; it is refused, with nothing written, when a file to be changed is not what was
/// read. Each file is replaced as a whole, so that a crash leaves the old one or the new one.
class VCardAddressBook final : public AddressBook {
public:
    /// Nothing is read before the first listing.
    explicit VCardAddressBook(std::filesystem::path path);
    ~VCardAddressBook() override;
    VCardAddressBook(const VCardAddressBook&) = delete;
    VCardAddressBook& operator=(const VCardAddressBook&) = delete;

    std::span<const Person> readPeople() override;
    std::span<const Person> people() override;
    void removeRecord(const Person& person) override;
    void save() override;
    void checkBackUp(std::span<const Person* const> people) const override;
    void backUp(std::span<const Person* const> people, const std::filesystem::path& file) override;
    ReadingNotes notes() const override;

private:
    /// The reading whose people the caller has. Errors: PlatformError when there is none.
    BookReading& listing() const;

    std::filesystem::path path_;
    std::unique_ptr<BookReading> reading_;
};

}  // namespace dunmora
