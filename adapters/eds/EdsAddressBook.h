#pragma once

#include "adapters/eds/ContactService.h"
#include "adapters/eds/EdsListing.h"
#include "platform/AddressBook.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace dunmora {

/// The address books that the desktop's service (Evolution Data Server) keeps: one of them, or all
/// that are enabled and can be changed.
///
/// It is a live book: others change it meanwhile. A deletion removes only people whose card is
/// still the one that was reviewed.
class EdsAddressBook final : public AddressBook {
public:
    /// All books, or the one with this uid. Nothing is read before the first listing.
    EdsAddressBook(std::unique_ptr<ContactService> service, std::optional<std::string> bookUid);
    ~EdsAddressBook() override = default;
    EdsAddressBook(const EdsAddressBook&) = delete;
    EdsAddressBook& operator=(const EdsAddressBook&) = delete;

    std::span<const Person> readPeople() override;
    std::span<const Person> people() override;
    void removeRecord(const Person& person) override;
    void save() override;
    void checkBackUp(std::span<const Person* const> people) const override;
    void backUp(std::span<const Person* const> people, const std::filesystem::path& file) override;
    ReadingNotes notes() const override { return notes_; }

private:
    /// What a listing has found, and what there is to say about it.
    struct Reading {
        std::unique_ptr<EdsListing> listing;
        // Beside each book of the listing.
        std::vector<std::size_t> batchSizes;
        ReadingNotes notes;
        // Of the books that could not be read: the uid, and why as a whole sentence.
        std::vector<std::pair<std::string, std::string>> failures;
    };

    std::vector<ServiceBook> chosenBooks() const;
    Reading read() const;
    const EdsListing& listing() const;

    std::unique_ptr<ContactService> service_;
    std::optional<std::string> bookUid_;
    ReadingNotes notes_;
    // The listing that the user reviews, and a later one, if there is any.
    std::unique_ptr<EdsListing> reviewed_;
    std::unique_ptr<EdsListing> current_;
    // Of the last listing.
    std::vector<std::size_t> batchSizes_;
    std::vector<bool> isPending_;
};

}  // namespace dunmora
