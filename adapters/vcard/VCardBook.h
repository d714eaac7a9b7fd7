#pragma once

#include "adapters/posix/FileChange.h"
#include "adapters/posix/FileIdentity.h"
#include "adapters/posix/LockedFolder.h"
#include "adapters/posix/OpenFiles.h"
#include "adapters/vcard/CardFile.h"
#include "adapters/vcard/CardPlace.h"
#include "adapters/vcard/CardReader.h"
#include "adapters/vcard/Deletion.h"
#include "adapters/vcard/ListMembers.h"
#include "adapters/vcard/ReadBack.h"
#include "adapters/vcard/TextDecoding.h"
#include "adapters/vcard/UidRegistry.h"
#include "platform/AddressBook.h"
#include "platform/CardSource.h"
#include "platform/PersonCard.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

/// A book of vCards in memory: its files as they were read, the people in them, and the removals
/// that are pending or saved.
///
/// Thread: as `AddressBook` and `CardSource`; blocks on the disk. Errors: PlatformError.
class VCardBook final {
public:
    /// Reads a file, or the files of a folder, unless they take more than `largest` bytes.
    /// `remainders` are of deletions made since the book was opened. Errors: also for a file
    /// without cards that is none of them.
    VCardBook(const std::filesystem::path& path, std::uintmax_t largest,
              const Remainders& remainders);
    /// Reads cards that are in no file and cannot be changed.
    VCardBook(const PersonSource& source, FileBytes bytes);

    /// Everyone who was read and has not been deleted. Discards pending removals.
    std::span<const Person> people();

    /// Implement `AddressBook` and `CardSource`.
    void checkWritable(std::span<const std::string> uids) const;
    void removeRecord(const Person& person);
    /// Adds to `deletion` what has been removed from each file, also when it throws.
    void save(Deletion& deletion);
    const ReadingNotes& notes() const { return notes_; }
    std::string cards(std::span<const Person* const> people) const;
    std::optional<PersonCard> card(std::string_view uid) const;
    bool compareStored(std::span<const std::string> uids, CardDifferences& differences) const;
    std::optional<std::vector<CardProperty>>
    propertiesNamed(std::string_view uid, std::span<const std::string> names) const;

private:
    /// What a save removes from one file.
    struct FileRemovals {
        std::size_t file;
        // All ranges removed so far, including the new ones.
        CardFile::Ranges ranges;
        // The index of the first person in the file; those of one file are adjacent.
        std::size_t firstPerson;
        // The indices of the people to remove.
        std::vector<std::size_t> people;
        // For putting them back.
        RemovedFile record;
    };

    void readFileAt(const std::filesystem::path& path, std::uintmax_t largest);
    void noteInterruptedDeletions(const std::filesystem::path& path);
    void readCards(std::size_t fileIndex, const Remainders& remainders);
    void assignUids(const CardFile& file, std::span<Person> people);
    void addPlaces(std::size_t fileIndex);
    void noteSkippedCards(const CardFile& file);
    void noteForeignFile(const CardFile& file, const Remainders& remainders);
    void finishReading();
    void discardPending();
    void dropRemoved();
    std::size_t indexOf(const Person& person) const;
    std::size_t placeNumber(std::size_t index) const;
    CardPlace& placeOf(std::size_t index) { return places_[placeNumber(index)]; }
    const CardPlace& placeOf(std::size_t index) const { return places_[placeNumber(index)]; }
    FileEncoding commonEncoding(std::span<const Person* const> people) const;
    std::vector<FileRemovals> pendingRemovals() const;
    std::unique_ptr<FileChange> prepared(FileRemovals& removals, LockedFolders& folders,
                                         OpenFiles openFiles) const;
    std::string_view cardOf(const CardPlace& place) const;
    const CardPlace* comparablePlace(std::string_view uid) const;
    std::vector<RemainingCard> cardsWithout(const FileRemovals& removals) const;
    void markRemoved(FileRemovals& removals);

    bool isFolder_ = false;
    ReadingNotes notes_;
    std::vector<CardFile> files_;
    // The number of hard links of each file.
    std::vector<std::uintmax_t> links_;
    std::map<FileIdentity, std::size_t> filesByIdentity_;
    // With the files, these own the texts that the people refer to.
    CardReader reader_;
    // Refers to the people listed until they move.
    UidRegistry uids_;
    // One for each file.
    std::vector<PersonSource> sources_;
    // The cards of all people read, in the order of their ids.
    std::vector<CardPlace> places_;
    ListMembers lists_;
    // The people listed, and the number of each one's place at the same index; no numbers as long
    // as everybody who was read is listed.
    CardReader::Cards cards_;
    std::vector<std::uint32_t> placeNumbers_;
    bool hasPending_ = false;
    bool hasRemoved_ = false;
};

}  // namespace dunmora
