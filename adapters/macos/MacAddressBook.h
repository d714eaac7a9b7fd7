#pragma once

#include "adapters/macos/PeopleListing.h"
#include "platform/AddressBook.h"

#include <atomic>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

class FrameworkBook;

/// The name that stands for the Mac's own address book where others have a path.
constexpr std::string_view kMacAddressBookName = "macos:";

/// The Mac's own address book, through the Address Book framework.
///
/// The framework hears of removals in `save` and not before; there everyone to be removed is
/// compared with what was read, and if one has changed nobody is removed. The framework cannot take
/// a removal back: when it fails with some of them, they would go along with the next save, whoever
/// asks for it. So the process deletes nothing more from then on.
///
/// Thread: any, one call at a time; the framework is asked on a thread of its own.
class MacAddressBook final : public AddressBook {
public:
    /// Whether the framework holds removals that could neither be saved nor taken back.
    using StrandedRemovals = std::atomic<bool>;

    /// The answer for the one address book that the framework gives a process.
    static StrandedRemovals& strandedRemovalsOfTheProcess();

    /// `stranded` must outlive it.
    explicit MacAddressBook(StrandedRemovals& stranded = strandedRemovalsOfTheProcess());
    ~MacAddressBook() override = default;
    MacAddressBook(const MacAddressBook&) = delete;
    MacAddressBook& operator=(const MacAddressBook&) = delete;

    std::span<const Person> readPeople() override;
    std::span<const Person> people() override;
    void removeRecord(const Person& person) override;
    void save() override;
    void checkBackUp(std::span<const Person* const> people) const override;
    void backUp(std::span<const Person* const> people, const std::filesystem::path& file) override;
    ReadingNotes notes() const override;

private:
    const PeopleListing& lastListing() const { return relisted_ ? *relisted_ : reading_; }
    const FrameworkPerson& asReviewed(const std::string& uid) const;
    const FrameworkPerson& listed(const Person& view) const;
    void refuseWhereRemovalsAreStranded() const;
    std::vector<std::string> cardsOf(std::span<const Person* const> people) const;

    StrandedRemovals& stranded_;
    // What the user reviews, and a later listing of the same.
    PeopleListing reading_;
    std::optional<PeopleListing> relisted_;
    // The uids of those to be removed, in the order in which that was asked for.
    std::vector<std::string> removals_;
};

}  // namespace dunmora
