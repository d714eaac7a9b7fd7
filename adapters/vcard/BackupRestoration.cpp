#include "adapters/vcard/BackupRestoration.h"

#include "adapters/posix/FileContent.h"
#include "adapters/posix/FileCreation.h"
#include "adapters/posix/FileIdentity.h"
#include "adapters/posix/FileMetadata.h"
#include "adapters/posix/LockedFile.h"
#include "adapters/vcard/AddedCards.h"
#include "adapters/vcard/BookSize.h"
#include "adapters/vcard/CardAppending.h"
#include "adapters/vcard/CardFolder.h"
#include "adapters/vcard/ForeignFile.h"
#include "adapters/vcard/FreeNames.h"
#include "adapters/vcard/Restoring.h"
#include "platform/PlatformError.h"
#include "text/Ascii.h"
#include "text/Counted.h"
#include "text/DisplayText.h"

#include <sys/stat.h>

#include <algorithm>
#include <iterator>
#include <list>
#include <memory>
#include <set>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

namespace dunmora {

namespace {

using Cards = std::vector<const AddedCards::AddedCard*>;

std::string notRestored(const AddedCards::AddedCard& card, std::string_view reason)
{
    return quotedText(card.name()) + " was not restored: " + std::string(reason);
}

/// Those of the cards that are to be added; counts and names the others.
Cards cardsToAdd(const AddedCards& cards, Restoration& result)
{
    Cards added;
    // Of cards with the same text as another one: there are usually few.
    std::set<std::string_view> repeated;
    const auto isRepeated = [&](const AddedCards::AddedCard& card) {
        const auto& first = cards.all()[card.firstWithText];
        if (&first == &card) {
            return false;
        }
        repeated.insert(first.bytes);
        return !repeated.insert(card.bytes).second;
    };
    for (const auto& card : cards.all()) {
        if (cards.isPresent(card) || isRepeated(card)) {
            ++result.present;
        } else if (cards.isUidTaken(card)) {
            result.failures.push_back(
                notRestored(card, "its UID belongs to another card in the address book."));
        } else {
            added.push_back(&card);
        }
    }
    return added;
}

void append(Restoration& result, Restoration&& more)
{
    result.restored += more.restored;
    std::move(more.failures.begin(), more.failures.end(), std::back_inserter(result.failures));
    std::move(more.remarks.begin(), more.remarks.end(), std::back_inserter(result.remarks));
}

void restoreToFile(const std::filesystem::path& path, std::uintmax_t largest,
                   const Remainders& remainders, AddedCards& cards, CardRestorer::Mode mode,
                   Restoration& result)
{
    const CardFile file(path, readFile(path, largest).bytes);
    checkTakesCards(file, remainders);
    cards.compareWith(file);
    const auto appendix = appendixTo(file, cards, cardsToAdd(cards, result));
    for (const auto* const card : appendix.unsuitable) {
        result.failures.push_back(
            notRestored(*card, "the encoding of the address book cannot hold its card."));
    }
    if (mode == CardRestorer::Mode::DryRun) {
        result.restored = appendix.people;
        return;
    }
    if (appendix.people == 0) {
        return;
    }
    Restoring restoring(1);
    auto locked = LockedFile::open({path});
    restoring.lockFoldersOf(locked);
    locked.expectContent({file.bytes()});
    restoring.add({appendix.people, 0, {}}, appended(std::move(locked), file, appendix), path);
    append(result, restoring.commit().result);
}

/// A name for the file of a card: its uid, if that is a harmless name, else a fixed one.
std::filesystem::path nameFor(const AddedCards::AddedCard& card)
{
    constexpr std::size_t kLongest = 100;
    const auto isHarmless = [](char c) {
        return (c >= '0' && c <= '9') || (toUpperAscii(c) >= 'A' && toUpperAscii(c) <= 'Z') ||
               c == '-' || c == '_';
    };
    const auto uid = card.uid();
    const bool canBeName =
        !uid.empty() && uid.size() <= kLongest && std::all_of(uid.begin(), uid.end(), isHarmless);
    return std::string(canBeName ? uid : "restored") + ".vcf";
}

/// Compares the cards with those of the folder and returns the metadata for new files in it: the
/// permissions of its first file, so that users who can read the old files can read the new ones.
FileMetadata compareWithFolder(const std::filesystem::path& folder, std::uintmax_t largest,
                               AddedCards& cards)
{
    std::vector<std::string> remarks;
    const auto names = cardFilesIn(folder, remarks);
    checkBookSize(folder, names, largest);
    std::set<FileIdentity> known;
    for (const auto& name : names) {
        auto [identity, links, bytes] = readFile(name, largest);
        if (known.insert(identity).second) {
            cards.compareWith({name, std::move(bytes)});
        }
    }
    FileMetadata metadata;
    struct stat status {};
    if (!names.empty() && stat(names.front().c_str(), &status) == 0) {
        constexpr mode_t kReadAndWrite = 0666;
        metadata.mode = (status.st_mode & kReadAndWrite) | S_IRUSR | S_IWUSR;
    }
    return metadata;
}

void restoreToFolder(const std::filesystem::path& path, std::uintmax_t largest, AddedCards& cards,
                     CardRestorer::Mode mode, Restoration& result)
{
    const auto metadata = compareWithFolder(path, largest, cards);
    const auto added = cardsToAdd(cards, result);
    if (mode == CardRestorer::Mode::DryRun) {
        result.restored = added.size();
        return;
    }
    Restoring restoring(added.size());
    std::list<std::string> texts;
    FreeNames names;
    const auto folder = std::filesystem::canonical(path);
    for (const auto* const card : added) {
        auto& text = texts.emplace_back(byteOrderMarkOf(cards.encoding()));
        text += card->bytes;
        text += card->lineEnd.empty() ? lineEndIn(cards.encoding()) : card->lineEnd;
        const auto name = names.takeLike(folder / nameFor(*card));
        const NewNames newNames{{name}, {}};
        restoring.lockFoldersOf(newNames);
        auto creation = std::make_unique<FileCreation>(newNames, metadata, Pieces{text});
        if (!creation->newFile().has(creation->content())) {
            throw PlatformError(quotedPath(name) +
                                " was not created: it could not be read back as it was written.");
        }
        restoring.add({1, 0, {}}, std::move(creation), name);
    }
    append(result, restoring.commit().result);
}

}  // namespace

void noteWhatIsNotRestored(const AddedCards& cards, Restoration& result)
{
    if (const auto count = cards.skipped().size(); count > 0) {
        result.failures.push_back(
            counted(count, "card of the backup was not restored because it breaks off or has no ",
                    "cards of the backup were not restored because they break off or have no ") +
            "properties.");
    }
    if (cards.groups() > 0) {
        result.remarks.push_back(
            counted(cards.groups(), "list of the backup was not restored: only people are.",
                    "lists of the backup were not restored: only people are."));
    }
}

Restoration restoreBackup(const std::filesystem::path& book, std::uintmax_t largest,
                          const Remainders& remainders, std::string_view backup,
                          CardRestorer::Mode mode)
{
    const auto file = cardFileOf("backup", backup);
    AddedCards cards(file);
    if (cards.all().empty()) {
        throw PlatformError("The backup contains no people.");
    }
    std::error_code error;
    const auto status = std::filesystem::status(book, error);
    if (status.type() == std::filesystem::file_type::not_found) {
        throw PlatformError(quotedPath(book) + " does not exist.");
    }
    if (is_other(status)) {
        throw PlatformError(quotedPath(book) + " is neither a file nor a folder.");
    }
    Restoration result;
    noteWhatIsNotRestored(cards, result);
    if (is_directory(status)) {
        restoreToFolder(book, largest, cards, mode, result);
    } else {
        restoreToFile(book, largest, remainders, cards, mode, result);
    }
    return result;
}

}  // namespace dunmora
