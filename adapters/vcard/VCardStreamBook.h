#pragma once

#include "adapters/posix/FileBytes.h"
#include "adapters/posix/StreamContent.h"
#include "adapters/vcard/BookSize.h"
#include "platform/AddressBook.h"
#include "platform/CardSource.h"
#include "platform/PersonSource.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace dunmora {

class VCardBook;

/// An address book of the vCards that come from a stream, such as standard input. They are read as
/// those of a file are (`VCardAddressBook`), but only once, and nobody can be removed.
class VCardStreamBook final : public AddressBook, public CardSource {
public:
    /// Reads a whole stream of at most this many bytes. Errors: PlatformError.
    using Read = std::function<FileBytes(std::uintmax_t largest)>;

    /// `source` is what all people are from. Nothing is read before the first listing.
    explicit VCardStreamBook(PersonSource source, Read read = readStandardInput,
                             std::uintmax_t largest = largestBookSize());
    ~VCardStreamBook() override;
    VCardStreamBook(const VCardStreamBook&) = delete;
    VCardStreamBook& operator=(const VCardStreamBook&) = delete;

    std::span<const Person> readPeople() override { return people(); }
    std::span<const Person> people() override;
    void checkWritable(std::span<const std::string> uids) const override;
    void removeRecord(const Person& person) override;
    void save() override {}
    ReadingNotes notes() const override;
    std::string cards(std::span<const Person* const> people) const override;
    std::optional<PersonCard> card(std::string_view uid) const override;
    bool compareStored(std::span<const std::string> uids,
                       CardDifferences& differences) const override;
    std::optional<std::vector<CardProperty>>
    propertiesNamed(std::string_view uid, std::span<const std::string> names) const override;

private:
    PersonSource source_;
    Read read_;
    std::uintmax_t largest_;
    std::unique_ptr<VCardBook> book_;
};

}  // namespace dunmora
