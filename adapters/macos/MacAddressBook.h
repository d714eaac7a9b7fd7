#pragma once

#include "adapters/macos/PeopleListing.h"
#include "platform/AddressBook.h"
#include "platform/CardSource.h"

#include <atomic>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

class FrameworkBook;

/// The name that opens the Mac's own address book, where other books have a path.
constexpr std::string_view kMacAddressBookName = "macos:";

/// The Mac's own address book, through the Address Book framework.
///
/// `save` passes the removals to the framework. It first compares everyone to be removed with what
/// was read, and removes nobody if one of them has changed. The framework cannot undo a removal:
/// those that could not be saved would be saved together with the next change. So the process
/// deletes nothing more after such a failure.
///
/// Thread: any, one call at a time; the framework is called on its own thread.
class MacAddressBook final : public AddressBook, public CardSource {
public:
    /// Whether the framework holds removals that could neither be saved nor undone.
    using StrandedRemovals = std::atomic<bool>;

    /// The state of the one address book that a process has.
    static StrandedRemovals& strandedRemovalsOfTheProcess();

    /// `stranded` must outlive the address book.
    explicit MacAddressBook(StrandedRemovals& stranded = strandedRemovalsOfTheProcess());
    ~MacAddressBook() override = default;
    MacAddressBook(const MacAddressBook&) = delete;
    MacAddressBook& operator=(const MacAddressBook&) = delete;

    std::span<const Person> readPeople() override;
    std::span<const Person> people() override;
    void removeRecord(const Person& person) override;
    void save() override;
    ReadingNotes notes() const override;
    std::string cards(std::span<const Person* const> people) const override;
    std::optional<PersonCard> card(std::string_view uid) const override;

private:
    const PeopleListing& lastListing() const { return relisted_ ? *relisted_ : reading_; }
    const FrameworkPerson& asReviewed(const std::string& uid) const;
    const FrameworkPerson& listed(const Person& view) const;
    void refuseWhereRemovalsAreStranded() const;

    StrandedRemovals& stranded_;
    // The listing that the user reviews, and the last one if it is another.
    PeopleListing reading_;
    std::optional<PeopleListing> relisted_;
    // The uids of those to be removed, in the order of the calls.
    std::vector<std::string> removals_;
};

}  // namespace dunmora
