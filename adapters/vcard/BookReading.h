#pragma once

#include "adapters/vcard/BookFile.h"
#include "adapters/vcard/CardReader.h"
#include "adapters/vcard/TextDecoding.h"
#include "adapters/vcard/UidRegistry.h"
#include "platform/AddressBook.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

/// One reading of a book of vCards, what it has found, and what became of it since: the bytes of
/// every file as they were read, the people in them, and the removals asked for and written.
///
/// Thread: one call at a time. Errors: PlatformError.
class BookReading final {
public:
    /// Reads a file or the files of a folder.
    explicit BookReading(const std::filesystem::path& path);

    /// Everyone who was read and not deleted since. Forgets the removals that were not saved.
    std::span<const Person> people();

    /// As `AddressBook::removeRecord`, `save`, `checkBackUp`, `backUp` and `notes`.
    void removeRecord(const Person& person);
    void save();
    void checkBackUp(std::span<const Person* const> people) const;
    void backUp(std::span<const Person* const> people, const std::filesystem::path& path) const;
    const ReadingNotes& notes() const { return notes_; }

private:
    /// A part of a file, in bytes.
    struct ByteRange {
        std::size_t begin;
        std::size_t end;
    };

    /// A file of the book as it was read, and what deletions have cut out of it since.
    struct SourceFile {
        // Every name under which the book reaches the file.
        std::vector<std::filesystem::path> names;
        FileBytes bytes;
        FileEncoding encoding = FileEncoding::Bytes;
        // The text of a UTF-16 file.
        std::string decoded;
        // In order and apart.
        std::vector<ByteRange> removed;

        std::string_view text() const;
    };

    /// Where a person's card stands.
    struct CardPlace {
        std::uint32_t file = 0;
        bool hasLineEnd = false;
        bool isPending = false;
        bool isRemoved = false;
        ByteRange range;
    };

    /// What a save does to one file.
    struct FileRemoval {
        std::size_t file;
        // Everything that will have been cut out, in order and apart.
        std::vector<ByteRange> ranges;
        // The positions of the people who go.
        std::vector<std::size_t> people;
    };

    void readSource(const std::filesystem::path& path);
    void readCards(std::size_t fileIndex);
    void takeNotes(const SourceFile& file);
    void placeCards(std::size_t fileIndex);
    void forgetPending();
    void forgetRemoved();
    std::size_t positionOf(const Person& person) const;
    FileEncoding commonEncoding(std::span<const Person* const> people) const;
    std::vector<FileRemoval> pendingRemovals() const;
    void apply(FileRemoval& removal);
    std::string halfDone(const std::string& reason, const std::vector<FileRemoval>& removals,
                         std::size_t doneCount, bool nextHasBegun) const;
    static Pieces without(std::string_view bytes, const std::vector<ByteRange>& ranges);

    bool isFolder_ = false;
    ReadingNotes notes_;
    std::vector<SourceFile> files_;
    std::map<FileIdentity, std::size_t> filesByIdentity_;
    // What the people's texts are views into, besides the files.
    CardReader reader_;
    UidRegistry uids_;
    // The people listed, and beside each the place of its card.
    CardReader::Cards cards_;
    std::vector<CardPlace> places_;
    bool hasPending_ = false;
    bool hasRemoved_ = false;
};

}  // namespace dunmora
