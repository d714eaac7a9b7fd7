#include "adapters/vcard/VCardBook.h"

#include "adapters/posix/FileChanges.h"
#include "adapters/posix/FileContent.h"
#include "adapters/posix/FileError.h"
#include "adapters/posix/FileRemoval.h"
#include "adapters/posix/FileReplacement.h"
#include "adapters/posix/Leftover.h"
#include "adapters/posix/LockedFile.h"
#include "adapters/vcard/BookSize.h"
#include "adapters/vcard/CardFolder.h"
#include "adapters/vcard/CardProperties.h"
#include "adapters/vcard/ForeignFile.h"
#include "adapters/vcard/HardLinks.h"
#include "adapters/vcard/StoredDifferences.h"
#include "platform/PlatformError.h"
#include "text/DisplayText.h"
#include "text/LookAhead.h"
#include "text/SideBySide.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <system_error>
#include <utility>

namespace dunmora {

namespace {

/// Fewer people have their ids before another thread has started.
constexpr std::size_t kFewestForThreads = 10'000;

/// The number, counted from 1, of the line that starts at the end of this text.
std::size_t lineNumberAfter(std::string_view text)
{
    std::size_t number = 1;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isPair = text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n';
        number += text[i] == '\n' || (text[i] == '\r' && !isPair) ? 1 : 0;
    }
    return number;
}

/// A message about a missing file, and where its content is if a deletion was interrupted.
std::string withInterruptedDeletions(std::string message, const std::filesystem::path& path)
{
    const auto folder = path.has_parent_path() ? path.parent_path() : ".";
    for (const auto& sentence : interruptedChangesIn(folder, {path.filename().string()})) {
        appendSentences(message, sentence);
    }
    return message;
}

}  // namespace

VCardBook::VCardBook(const std::filesystem::path& path, std::uintmax_t largest,
                     const Remainders& remainders)
{
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (status.type() == std::filesystem::file_type::not_found) {
        throw PlatformError(withInterruptedDeletions(quotedPath(path) + " does not exist.", path));
    }
    isFolder_ = is_directory(status);
    // Opening a device can start it.
    if (is_other(status)) {
        throw PlatformError(quotedPath(path) + " is neither a file nor a folder.");
    }
    const auto files = isFolder_ ? cardFilesIn(path, notes_.remarks) : std::vector{path};
    if (files.empty()) {
        notes_.remarks.push_back(remarkAboutNoCardFiles(path));
    }
    checkBookSize(path, files, largest);
    for (const auto& file : files) {
        readFileAt(file, largest);
    }
    noteInterruptedDeletions(path);
    // The people refer to these, so the list must not grow while they are read.
    sources_.reserve(files_.size());
    for (std::size_t i = 0; i < files_.size(); ++i) {
        readCards(i, remainders);
        if (auto remark = hardLinkRemark(files_[i].names(), links_[i]); !remark.empty()) {
            notes_.remarks.push_back(std::move(remark));
        }
    }
    finishReading();
}

VCardBook::VCardBook(const PersonSource& source, FileBytes bytes)
{
    files_.emplace_back(source.name, std::move(bytes));
    sources_.reserve(1);
    readCards(0, {});
    finishReading();
    sources_.front() = source;
}

/// Adds remarks about what a killed deletion has left beside the files.
void VCardBook::noteInterruptedDeletions(const std::filesystem::path& path)
{
    // The names of our files in each folder; with none, all that are there.
    std::map<std::filesystem::path, std::set<std::string>> folders;
    std::error_code error;
    for (const auto& file : files_) {
        for (const auto& name : file.names()) {
            if (!isFolder_ || std::filesystem::is_symlink(name, error)) {
                const auto target = std::filesystem::canonical(name, error);
                folders[target.parent_path()].insert(target.filename().string());
            }
        }
    }
    if (isFolder_) {
        folders.erase(std::filesystem::canonical(path, error));
        folders[path].clear();
    }
    for (const auto& [folder, names] : folders) {
        for (auto& sentence : interruptedChangesIn(folder, names)) {
            notes_.remarks.push_back(std::move(sentence));
        }
    }
}

void VCardBook::readFileAt(const std::filesystem::path& path, std::uintmax_t largest)
{
    auto [identity, links, bytes] = readFile(path, largest);
    const auto [known, isNew] = filesByIdentity_.try_emplace(identity, files_.size());
    if (isNew) {
        files_.emplace_back(path, std::move(bytes));
        links_.push_back(links);
    } else {
        files_[known->second].addName(path);
    }
}

void VCardBook::readCards(std::size_t fileIndex, const Remainders& remainders)
{
    const auto& file = files_[fileIndex];
    const auto& path = file.names().front();
    const auto& source =
        sources_.emplace_back(PersonSource{path.string(), path.filename().string()});
    const auto firstPerson = cards_.people.size();
    // The people of the files before this one move when the list grows.
    uids_.copyIds();
    cards_.ranges.clear();
    cards_.skipped.clear();
    cards_.groups.clear();
    cards_.uidHashes.clear();
    cards_.hashesUids = true;
    file.read(reader_, cards_);

    const auto people = std::span(cards_.people).subspan(firstPerson);
    for (auto& person : people) {
        person.source = &source;
    }
    assignUids(file, people);
    addPlaces(fileIndex);
    for (const auto& range : cards_.groups) {
        lists_.add(file.text().substr(range.begin, range.end - range.begin), file.textKind());
    }
    noteSkippedCards(file);
    if (isForeign(file, cards_)) {
        noteForeignFile(file, remainders);
    }
}

/// Assigns ids to the people of a file. In nearly all books everyone has a UID that nobody else
/// has.
void VCardBook::assignUids(const CardFile& file, std::span<Person> people)
{
    const auto count = people.size();
    const auto& hashes = cards_.uidHashes;
    if (count >= kFewestForThreads && uids_.assignAll(people, hashes, processors())) {
        return;
    }
    uids_.reserve(cards_.people.size());
    visitWithLookAhead<std::uint64_t>(
        count,
        [&](std::size_t i, std::uint64_t& hash) {
            hash = hashes[i];
            uids_.announce(hash);
        },
        [&](std::size_t i, std::uint64_t hash) {
            const auto& range = cards_.ranges[i];
            const auto size = range.end - range.begin - range.lineEndSize;
            people[i].uid =
                uids_.assign(people[i].uid, hash, file.text().substr(range.begin, size));
        });
}

void VCardBook::addPlaces(std::size_t fileIndex)
{
    if (places_.empty()) {
        places_.reserve(cards_.ranges.size());
    }
    CardBytesFinder finder(files_[fileIndex]);
    for (const auto& range : cards_.ranges) {
        places_.emplace_back(fileIndex, finder.bytesOf(range));
    }
}

/// Frees what only the reading needs; in a large book it is much.
void VCardBook::finishReading()
{
    CardReader::Cards cards;
    cards.people = std::move(cards_.people);
    cards_ = std::move(cards);
}

void VCardBook::noteSkippedCards(const CardFile& file)
{
    const auto name = quotedPath(file.names().front());
    const auto count = cards_.skipped.size();
    notes_.cardsSkipped += count;
    if (count > 0) {
        const auto line =
            std::to_string(lineNumberAfter(file.text().substr(0, cards_.skipped.front())));
        notes_.remarks.push_back(
            count == 1
                ? "1 card in " + name + " (line " + line +
                      ") was skipped because it breaks off or has no properties. It stays in the "
                      "file unchanged."
                : std::to_string(count) + " cards in " + name + " (the first in line " + line +
                      ") were skipped because they break off or have no properties. They stay in "
                      "the file unchanged.");
    }
}

void VCardBook::noteForeignFile(const CardFile& file, const Remainders& remainders)
{
    const auto name = quotedPath(file.names().front());
    if (isRemainder(file, remainders)) {
        notes_.remarks.push_back(name + " contains no vCards.");
        return;
    }
    const auto description = describeForeign(file.bytes());
    if (!isFolder_) {
        auto message = name + " is " + description + ". Export as vCard (.vcf).";
        // Nobody asks for the remarks of a book that is refused, and people may be in what an
        // interrupted deletion has left.
        for (const auto& remark : notes_.remarks) {
            appendSentences(message, remark);
        }
        throw PlatformError(message);
    }
    notes_.remarks.push_back(name + " was skipped: it is " + description + ".");
}

std::span<const Person> VCardBook::people()
{
    discardPending();
    dropRemoved();
    return cards_.people;
}

void VCardBook::discardPending()
{
    if (std::exchange(hasPending_, false)) {
        for (auto& place : places_) {
            place.isPending = false;
        }
    }
}

void VCardBook::dropRemoved()
{
    if (!hasRemoved_) {
        return;
    }
    std::vector<Person> people;
    std::vector<std::uint32_t> numbers;
    people.reserve(cards_.people.size());
    numbers.reserve(cards_.people.size());
    for (std::size_t i = 0; i < cards_.people.size(); ++i) {
        if (!placeOf(i).isRemoved) {
            people.push_back(cards_.people[i]);
            numbers.push_back(static_cast<std::uint32_t>(placeNumber(i)));
        }
    }
    uids_.copyIds();
    // Not erased in place: references from the last listing would then refer to other people.
    cards_.people = std::move(people);
    placeNumbers_ = std::move(numbers);
    hasRemoved_ = false;
}

std::size_t VCardBook::indexOf(const Person& person) const
{
    const std::less<> isBefore;
    const auto* first = cards_.people.data();
    if (isBefore(&person, first) || !isBefore(&person, first + cards_.people.size())) {
        throw PlatformError("That person is not in the address book.");
    }
    return static_cast<std::size_t>(&person - first);
}

std::size_t VCardBook::placeNumber(std::size_t index) const
{
    return placeNumbers_.empty() ? index : placeNumbers_[index];
}

void VCardBook::checkWritable(std::span<const std::string> uids) const
{
    std::vector<bool> isChecked(files_.size());
    std::size_t unchecked = files_.size();
    for (const auto& uid : uids) {
        if (unchecked == 0) {
            return;
        }
        const auto person = uids_.find(uid);
        if (!person || isChecked[places_[*person].file]) {
            continue;
        }
        isChecked[places_[*person].file] = true;
        --unchecked;
        LockedFile::checkWritable(files_[places_[*person].file].names());
    }
}

void VCardBook::removeRecord(const Person& person)
{
    try {
        placeOf(indexOf(person)).isPending = true;
        hasPending_ = true;
    } catch (const PlatformError&) {
        discardPending();
        throw;
    }
}

std::vector<VCardBook::FileRemovals> VCardBook::pendingRemovals() const
{
    std::vector<FileRemovals> removals;
    std::size_t firstPerson = 0;
    for (std::size_t i = 0; i < cards_.people.size(); ++i) {
        const auto& place = placeOf(i);
        if (place.file != placeOf(firstPerson).file) {
            firstPerson = i;
        }
        if (!place.isPending || place.isRemoved) {
            continue;
        }
        if (removals.empty() || removals.back().file != place.file) {
            removals.push_back({place.file, {}, firstPerson, {}, {}});
        }
        removals.back().ranges.push_back(place.range());
        removals.back().people.push_back(i);
    }
    const auto isBefore = [](const ByteRange& a, const ByteRange& b) { return a.begin < b.begin; };
    for (auto& removal : removals) {
        const auto& earlier = files_[removal.file].removed();
        if (!earlier.empty()) {
            CardFile::Ranges all;
            all.reserve(earlier.size() + removal.ranges.size());
            std::merge(earlier.begin(), earlier.end(), removal.ranges.begin(), removal.ranges.end(),
                       std::back_inserter(all), isBefore);
            removal.ranges = std::move(all);
        }
    }
    return removals;
}

void VCardBook::save(Deletion& deletion)
{
    if (!hasPending_) {
        return;
    }
    auto removals = pendingRemovals();
    discardPending();

    // Every file is locked, compared with what was read and its new content written before the
    // first one changes.
    LockedFolders folders;
    const auto openFiles = openFilesFor(removals.size());
    FileChanges changes;
    for (auto& ofFile : removals) {
        changes.add(prepared(ofFile, folders, openFiles), files_[ofFile.file].names().front());
    }
    std::size_t committed = 0;
    // Nothing may fail once the files have changed.
    deletion.files.reserve(deletion.files.size() + removals.size());
    try {
        changes.commit([&](std::size_t i) {
            deletion.files.push_back(std::move(removals[i].record));
            markRemoved(removals[i]);
            ++committed;
        });
    } catch (const PlatformError& error) {
        if (committed < removals.size()) {
            throw;
        }
        // The message must not read as if nothing had been deleted.
        throw PlatformError(std::string(error.what()) + " The people were deleted all the same.");
    }
}

std::unique_ptr<FileChange> VCardBook::prepared(FileRemovals& removals, LockedFolders& folders,
                                                OpenFiles openFiles) const
{
    const auto& file = files_[removals.file];
    auto locked = LockedFile::open(file.names());
    for (const auto* paths : {&locked.targets(), &locked.links()}) {
        for (const auto& path : *paths) {
            folders.lock(path.parent_path());
        }
    }
    const bool mayClose = openFiles == OpenFiles::Close && folders.areLocked();
    locked.expectContent(file.without(file.removed()));
    auto content = file.without(removals.ranges);
    if (isFolder_ && file.areBlank(content)) {
        removals.record = removedWith(file, locked);
        removals.record.people = removals.people.size();
        auto removal = std::make_unique<FileRemoval>(std::move(locked));
        if (mayClose) {
            removal->closeFiles();
        }
        return removal;
    }
    removals.record = removedFrom(file, removals.ranges, locked);
    const auto remaining = cardsWithout(removals);
    std::optional<FileAttribute> mark;
    if (remaining.empty() && isForeign(content)) {
        mark = remainderMark(content);
    }
    auto replacement =
        std::make_unique<FileReplacement>(std::move(locked), std::move(content), mark);
    checkReadBack(file.names().front(), *replacement, remaining);
    if (mayClose) {
        replacement->closeFiles();
    }
    return replacement;
}

/// The bytes of the card, without the line end.
std::string_view VCardBook::cardOf(const CardPlace& place) const
{
    return place.cardIn(files_[place.file].bytes());
}

/// The cards that remain in the file.
std::vector<RemainingCard> VCardBook::cardsWithout(const FileRemovals& removals) const
{
    std::vector<RemainingCard> cards;
    auto removed = removals.people.begin();
    for (auto i = removals.firstPerson; i < cards_.people.size(); ++i) {
        const auto& place = placeOf(i);
        if (place.file != removals.file) {
            break;
        }
        if (removed != removals.people.end() && *removed == i) {
            ++removed;
        } else if (!place.isRemoved) {
            cards.push_back({cardOf(place), &cards_.people[i]});
        }
    }
    return cards;
}

void VCardBook::markRemoved(FileRemovals& removals)
{
    files_[removals.file].setRemoved(std::move(removals.ranges));
    for (const auto index : removals.people) {
        placeOf(index).isRemoved = true;
    }
    hasRemoved_ = true;
}

FileEncoding VCardBook::commonEncoding(std::span<const Person* const> people) const
{
    std::optional<FileEncoding> encoding;
    for (const auto* person : people) {
        const auto own = files_[placeOf(indexOf(*person)).file].encoding();
        if (encoding.value_or(own) != own) {
            throw PlatformError(
                "One backup cannot hold these people: some of their cards are UTF-16 and others "
                "are not. Delete them in separate runs.");
        }
        encoding = own;
    }
    return encoding.value_or(FileEncoding::Bytes);
}

std::optional<PersonCard> VCardBook::card(std::string_view uid) const
{
    // Everyone takes one id, so that the ids are in the order of the people.
    const auto person = uids_.find(uid);
    if (!person) {
        return std::nullopt;
    }
    const auto& place = places_[*person];
    const auto& file = files_[place.file];
    std::string converted;
    auto properties = readProperties(file.textIn(place.range(), converted), file.textKind());
    if (!properties) {
        return std::nullopt;
    }
    auto lists = lists_.listsOf(*properties);
    return PersonCard{*std::move(properties), std::move(lists), sources_[place.file]};
}

/// Where the card is, if it can be compared as it is stored.
const CardPlace* VCardBook::comparablePlace(std::string_view uid) const
{
    // Whether somebody is in a list depends on the uid.
    const auto person = lists_.isEmpty() ? uids_.find(uid) : std::nullopt;
    if (!person) {
        return nullptr;
    }
    const auto& place = places_[*person];
    // Equal bytes of files in different encodings may be different texts.
    return files_[place.file].textKind() == CardReader::Text::Bytes ? &place : nullptr;
}

bool VCardBook::compareStored(std::span<const std::string> uids, CardDifferences& differences) const
{
    differences.sources.clear();
    std::vector<std::string_view> cards;
    cards.reserve(uids.size());
    for (const auto& uid : uids) {
        const auto* const place = comparablePlace(uid);
        if (place == nullptr) {
            return false;
        }
        cards.push_back(cardOf(*place));
        differences.sources.push_back(&sources_[place->file]);
    }
    return findStoredDifferences(cards, differences.names);
}

std::optional<std::vector<CardProperty>>
VCardBook::propertiesNamed(std::string_view uid, std::span<const std::string> names) const
{
    const auto* const place = comparablePlace(uid);
    return place == nullptr ? std::nullopt
                            : readPropertiesNamed(names, cardOf(*place), CardReader::Text::Bytes);
}

std::string VCardBook::cards(std::span<const Person* const> people) const
{
    const auto encoding = commonEncoding(people);
    const auto lineEnd = lineEndIn(encoding);
    auto content = byteOrderMarkOf(encoding);
    // A large backup would otherwise be copied several times while it grows.
    auto size = content.size();
    for (const auto* person : people) {
        const auto& place = placeOf(indexOf(*person));
        size += place.size;
        size += place.lineEndSize > 0 ? 0 : lineEnd.size();
    }
    content.reserve(size);
    for (const auto* person : people) {
        const auto& place = placeOf(indexOf(*person));
        content += place.linesIn(files_[place.file].bytes());
        content += place.lineEndSize > 0 ? "" : lineEnd;
    }
    return content;
}

}  // namespace dunmora
