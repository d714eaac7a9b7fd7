#pragma once

#include "adapters/macos/MacRestoration.h"
#include "adapters/macos/PeopleListing.h"
#include "platform/AddressBook.h"
#include "platform/CardRestorer.h"
#include "platform/CardSource.h"
#include "text/TextHash.h"

#include <atomic>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
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
/// changes nothing more after such a failure.
///
/// People who are put back are new people to the framework: they have another uid and are in no
/// group.
///
/// Thread: any, one call at a time; the framework is called on its own thread.
class MacAddressBook final : public AddressBook, public CardSource, public CardRestorer {
public:
    /// Whether the framework holds changes that could neither be saved nor undone.
    using StrandedChanges = std::atomic<bool>;

    /// The state of the one address book that a process has.
    static StrandedChanges& strandedChangesOfTheProcess();

    /// `stranded` must outlive the address book.
    explicit MacAddressBook(StrandedChanges& stranded = strandedChangesOfTheProcess());
    ~MacAddressBook() override = default;
    MacAddressBook(const MacAddressBook&) = delete;
    MacAddressBook& operator=(const MacAddressBook&) = delete;

    std::span<const Person> readPeople() override;
    std::span<const Person> people() override;
    /// The framework does not tell in advance.
    void checkWritable(std::span<const std::string> /*uids*/) const override {}
    void removeRecord(const Person& person) override;
    void save() override;
    ReadingNotes notes() const override;
    std::string cards(std::span<const Person* const> people) const override;
    std::optional<PersonCard> card(std::string_view uid) const override;

    std::size_t deletions() const override { return deletions_.size(); }
    std::size_t lastRemoved() const override;
    std::string lastRemovedCards() const override;
    Restoration restoreLast() override;
    Restoration restore(std::string_view backup, Mode mode) override;

private:
    /// Those whom one save removed and who have not been put back.
    struct Deletion {
        std::vector<MacCard> people;
        // The uids of everyone who stayed.
        std::unordered_set<std::string, TextHash> others;
    };

    const PeopleListing& lastListing() const { return relisted_ ? *relisted_ : reading_; }
    const FrameworkPerson& asReviewed(const std::string& uid) const;
    const FrameworkPerson& listed(const Person& view) const;
    void refuseWhereChangesAreStranded() const;
    void change(const std::function<void()>& work) const;

    StrandedChanges& stranded_;
    // The listing that the user reviews, and the last one if it is another.
    PeopleListing reading_;
    std::optional<PeopleListing> relisted_;
    // The uids of those to be removed, in the order of the calls.
    std::vector<std::string> removals_;
    // The last one is undone first; each has people.
    std::vector<Deletion> deletions_;
    // The uids of those who were put back after a deletion.
    std::unordered_set<std::string, TextHash> returned_;
};

}  // namespace dunmora
