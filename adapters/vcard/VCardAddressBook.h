#pragma once

#include "adapters/vcard/BookSize.h"
#include "adapters/vcard/Deletion.h"
#include "platform/AddressBook.h"
#include "platform/CardRestorer.h"
#include "platform/CardSource.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

class VCardBook;

/// An address book of vCard 2.1, 3.0 and 4.0 cards (RFC 2426, RFC 6350): a file, or a folder with
/// `*.vcf` and `*.vcard` files, which are read in file-name order, hidden ones excluded. A file may
/// contain any number of cards.
///
/// A deletion removes the bytes of the deleted cards and nothing else. It is refused, and nothing
/// is written, when an affected file has changed since it was read. Each file is replaced as a
/// whole, so that a crash leaves the old one or the new one.
class VCardAddressBook final : public AddressBook, public CardSource, public CardRestorer {
public:
    /// Nothing is read before the first listing. A book of more than `largest` bytes is refused.
    explicit VCardAddressBook(std::filesystem::path path,
                              std::uintmax_t largest = largestBookSize());
    ~VCardAddressBook() override;
    VCardAddressBook(const VCardAddressBook&) = delete;
    VCardAddressBook& operator=(const VCardAddressBook&) = delete;

    std::span<const Person> readPeople() override;
    std::span<const Person> people() override;
    void checkWritable(std::span<const std::string> uids) const override;
    void removeRecord(const Person& person) override;
    void save() override;
    ReadingNotes notes() const override;
    std::string cards(std::span<const Person* const> people) const override;
    std::optional<PersonCard> card(std::string_view uid) const override;
    bool compareStored(std::span<const std::string> uids,
                       CardDifferences& differences) const override;
    std::optional<std::vector<CardProperty>>
    propertiesNamed(std::string_view uid, std::span<const std::string> names) const override;

    std::size_t deletions() const override { return deletions_.size(); }
    std::size_t lastRemoved() const override;
    std::string lastRemovedCards() const override;
    Restoration restoreLast() override;
    Restoration restore(std::string_view backup, Mode mode) override;

private:
    void keepRemoved();
    /// The book that was read last. Errors: PlatformError when none has been read.
    VCardBook& listing() const;

    std::filesystem::path path_;
    std::uintmax_t largest_;
    std::unique_ptr<VCardBook> book_;
    // People have been put back since the last reading; its listing stays valid.
    bool isStale_ = false;
    // What saves have removed and nobody has put back, the last one last. They may refer to the
    // book.
    std::vector<Deletion> deletions_;
};

}  // namespace dunmora
