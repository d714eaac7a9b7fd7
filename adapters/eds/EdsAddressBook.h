#pragma once

#include "adapters/eds/ContactService.h"
#include "adapters/eds/EdsDeletion.h"
#include "adapters/eds/EdsListing.h"
#include "adapters/eds/StoredPictures.h"
#include "platform/AddressBook.h"
#include "platform/CardRestorer.h"
#include "platform/CardSource.h"

#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace dunmora {

/// The address books of the desktop's service (Evolution Data Server): one of them, or all that are
/// enabled and writable.
///
/// A live book: other programs change it at any time. A deletion removes only people whose card is
/// still the reviewed one.
class EdsAddressBook final : public AddressBook, public CardSource, public CardRestorer {
public:
    /// All books, or the one with this uid. Nothing is read before the first listing. `pictures` is
    /// the folder in which the service keeps the pictures of local books.
    EdsAddressBook(std::unique_ptr<ContactService> service, std::optional<std::string> bookUid,
                   std::filesystem::path pictures = pictureFolder());
    ~EdsAddressBook() override = default;
    EdsAddressBook(const EdsAddressBook&) = delete;
    EdsAddressBook& operator=(const EdsAddressBook&) = delete;

    std::span<const Person> readPeople() override;
    std::span<const Person> people() override;
    void checkWritable(std::span<const std::string> uids) const override;
    void removeRecord(const Person& person) override;
    void save() override;
    ReadingNotes notes() const override { return notes_; }
    /// The pictures of local books are part of the cards.
    std::string cards(std::span<const Person* const> people) const override;
    std::optional<PersonCard> card(std::string_view uid) const override;
    // Not of a card that may have pictures of a local book: their files can change.
    bool compareStored(std::span<const std::string> uids,
                       CardDifferences& differences) const override;
    std::optional<std::vector<CardProperty>>
    propertiesNamed(std::string_view uid, std::span<const std::string> names) const override;

    // Each person returns to the book that the person was removed from.
    std::size_t deletions() const override { return deletions_.size(); }
    std::size_t lastRemoved() const override;
    std::string lastRemovedCards() const override;
    Restoration restoreLast() override;
    /// Errors: also without the uid of a book.
    Restoration restore(std::string_view backup, Mode mode) override;

private:
    using Deletion = std::vector<EdsDeletion::Removed>;

    /// One reading of the books, with its notes.
    struct Reading {
        std::unique_ptr<EdsListing> listing;
        // One per book of the listing; 0 for a read-only book.
        std::vector<std::size_t> batchSizes;
        ReadingNotes notes;
        // The uids of the books that could not be read, each with a whole sentence.
        std::vector<std::pair<std::string, std::string>> failures;
    };

    std::vector<ServiceBook> chosenBooks() const;
    Reading read() const;
    const EdsListing& listing() const;
    void checkWritable(std::size_t book) const;
    const EdsListing::Entry* comparable(std::string_view uid) const;

    std::unique_ptr<ContactService> service_;
    std::optional<std::string> bookUid_;
    std::filesystem::path pictures_;
    ReadingNotes notes_;
    // The listing that the user reviews, and the last one if it is another.
    std::unique_ptr<EdsListing> reviewed_;
    std::unique_ptr<EdsListing> current_;
    // Of the last listing.
    std::vector<std::size_t> batchSizes_;
    std::vector<bool> isPending_;
    // Those who have not been put back, by deletion; none is empty.
    std::vector<Deletion> deletions_;
};

}  // namespace dunmora
