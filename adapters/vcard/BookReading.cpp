#include "adapters/vcard/BookReading.h"

#include "adapters/posix/ProcessShutdown.h"
#include "platform/PlatformError.h"

#include <algorithm>
#include <cerrno>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <system_error>
#include <utility>

namespace dunmora {

namespace {

/// Whether nothing but white space and byte-order marks is there.
bool isBlankText(std::string_view text)
{
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    while (true) {
        const auto solid = std::min(text.find_first_not_of(" \t\r\n\v\f"), text.size());
        text.remove_prefix(solid);
        if (!text.starts_with(kByteOrderMark)) {
            return text.empty();
        }
        text.remove_prefix(kByteOrderMark.size());
    }
}

bool areBlank(const Pieces& pieces, FileEncoding encoding)
{
    return std::all_of(pieces.begin(), pieces.end(), [&](std::string_view piece) {
        // A last odd byte of UTF-16 is no text, but a byte all the same.
        return encoding == FileEncoding::Bytes
                   ? isBlankText(piece)
                   : piece.size() % 2 == 0 && isBlankText(utf16ToUtf8(piece, encoding));
    });
}

std::string lineEndIn(FileEncoding encoding)
{
    using namespace std::string_literals;
    switch (encoding) {
    case FileEncoding::Utf16LittleEndian:
        return "\r\0\n\0"s;
    case FileEncoding::Utf16BigEndian:
        return "\0\r\0\n"s;
    case FileEncoding::Bytes:
        break;
    }
    return "\r\n";
}

std::string byteOrderMarkOf(FileEncoding encoding)
{
    switch (encoding) {
    case FileEncoding::Utf16LittleEndian:
        return "\xFF\xFE";
    case FileEncoding::Utf16BigEndian:
        return "\xFE\xFF";
    case FileEncoding::Bytes:
        break;
    }
    return {};
}

/// The number, from 1, of the line that begins at the end of this text.
std::size_t lineNumberAfter(std::string_view text)
{
    std::size_t number = 1;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isPair = text[i] == '\r' && i + 1 < text.size() && text[i + 1] == '\n';
        number += text[i] == '\n' || (text[i] == '\r' && !isPair) ? 1 : 0;
    }
    return number;
}

/// The folder's files that belong to the book, in file-name order; what has such a name but is no
/// file goes to the remarks.
std::vector<std::filesystem::path> cardFilesOf(const std::filesystem::path& folder,
                                               std::vector<std::string>& remarks)
{
    std::vector<std::filesystem::path> paths;
    std::error_code error;
    std::filesystem::directory_iterator entry(folder, error);
    while (!error && entry != std::filesystem::directory_iterator()) {
        const auto name = entry->path().filename().string();
        if (name.ends_with(".vcf") && !name.starts_with('.')) {
            paths.push_back(entry->path());
        }
        entry.increment(error);
    }
    if (error) {
        throw PlatformError(quoted(folder) + " cannot be read: " + error.message() + ".");
    }
    std::sort(paths.begin(), paths.end());
    std::erase_if(paths, [&](const std::filesystem::path& path) {
        std::error_code ignored;
        switch (std::filesystem::status(path, ignored).type()) {
        case std::filesystem::file_type::regular:
        case std::filesystem::file_type::none:
        case std::filesystem::file_type::unknown:
            return false;
        case std::filesystem::file_type::not_found:
            remarks.push_back(quoted(path) + " was left out: it is a link that leads nowhere.");
            return true;
        default:
            remarks.push_back(quoted(path) + " was left out: it is not a file.");
            return true;
        }
    });
    return paths;
}

}  // namespace

std::string_view BookReading::SourceFile::text() const
{
    return encoding == FileEncoding::Bytes ? bytes.view() : std::string_view(decoded);
}

BookReading::BookReading(const std::filesystem::path& path)
{
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (status.type() == std::filesystem::file_type::not_found) {
        throw PlatformError(quoted(path) + " does not exist.");
    }
    isFolder_ = is_directory(status);
    // Opening a device may set it going.
    if (is_other(status)) {
        throw PlatformError(quoted(path) + " is neither a file nor a folder.");
    }
    if (isFolder_) {
        for (const auto& file : cardFilesOf(path, notes_.remarks)) {
            readSource(file);
        }
    } else {
        readSource(path);
    }
    for (std::size_t i = 0; i < files_.size(); ++i) {
        readCards(i);
    }
}

void BookReading::readSource(const std::filesystem::path& path)
{
    auto [identity, bytes] = readFile(path);
    const auto [known, isNew] = filesByIdentity_.try_emplace(identity, files_.size());
    if (!isNew) {
        files_[known->second].names.push_back(path);
        return;
    }
    auto& file = files_.emplace_back();
    file.names.push_back(path);
    file.bytes = std::move(bytes);
    file.encoding = detectEncoding(file.bytes.view());
    if (file.encoding != FileEncoding::Bytes) {
        file.decoded = utf16ToUtf8(file.bytes.view(), file.encoding);
    }
}

void BookReading::readCards(std::size_t fileIndex)
{
    const auto& file = files_[fileIndex];
    const auto firstPerson = cards_.people.size();
    cards_.ranges.clear();
    cards_.skipped.clear();
    cards_.groups = 0;
    reader_.read(file.text(),
                 file.encoding == FileEncoding::Bytes ? CardReader::Text::Bytes
                                                      : CardReader::Text::Utf8,
                 cards_);

    uids_.reserve(cards_.people.size());
    for (std::size_t i = 0; i < cards_.ranges.size(); ++i) {
        const auto& range = cards_.ranges[i];
        auto& person = cards_.people[firstPerson + i];
        person.uid =
            uids_.assign(person.uid, file.text().substr(range.begin, range.end - range.begin -
                                                                         range.lineEndSize));
    }
    placeCards(fileIndex);
    takeNotes(file);
}

void BookReading::placeCards(std::size_t fileIndex)
{
    const auto& file = files_[fileIndex];
    std::size_t textPosition = 0;
    std::size_t bytePosition = 0;
    const auto byteAt = [&](std::size_t position) {
        const auto passed = file.text().substr(textPosition, position - textPosition);
        bytePosition += file.encoding == FileEncoding::Bytes ? passed.size() : utf16Size(passed);
        textPosition = position;
        return bytePosition;
    };
    for (const auto& range : cards_.ranges) {
        CardPlace place;
        place.file = static_cast<std::uint32_t>(fileIndex);
        place.hasLineEnd = range.lineEndSize > 0;
        place.range.begin = byteAt(range.begin);
        place.range.end = byteAt(range.end);
        places_.push_back(place);
    }
}

void BookReading::takeNotes(const SourceFile& file)
{
    const auto name = quoted(file.names.front());
    const auto count = cards_.skipped.size();
    notes_.cardsSkipped += count;
    if (count > 0) {
        const auto line =
            std::to_string(lineNumberAfter(file.text().substr(0, cards_.skipped.front())));
        notes_.remarks.push_back(
            count == 1 ? "1 card of " + name + " was skipped and stays as it is (line " + line +
                             "): it has no END or no property."
                       : std::to_string(count) + " cards of " + name +
                             " were skipped and stay as they are (the first in line " + line +
                             "): they have no END or no property.");
    } else if (cards_.ranges.empty() && cards_.groups == 0 && !isBlankText(file.text())) {
        notes_.remarks.push_back(name + " holds no vCard.");
    }
}

std::span<const Person> BookReading::people()
{
    forgetPending();
    forgetRemoved();
    return cards_.people;
}

void BookReading::forgetPending()
{
    if (std::exchange(hasPending_, false)) {
        for (auto& place : places_) {
            place.isPending = false;
        }
    }
}

void BookReading::forgetRemoved()
{
    if (!std::exchange(hasRemoved_, false)) {
        return;
    }
    std::size_t kept = 0;
    for (std::size_t i = 0; i < places_.size(); ++i) {
        if (!places_[i].isRemoved) {
            places_[kept] = places_[i];
            cards_.people[kept] = cards_.people[i];
            ++kept;
        }
    }
    places_.resize(kept);
    cards_.people.resize(kept);
}

std::size_t BookReading::positionOf(const Person& person) const
{
    const std::less<> isBefore;
    const auto* first = cards_.people.data();
    if (isBefore(&person, first) || !isBefore(&person, first + cards_.people.size())) {
        throw PlatformError("That person is not in the address book.");
    }
    return static_cast<std::size_t>(&person - first);
}

void BookReading::removeRecord(const Person& person)
{
    try {
        places_[positionOf(person)].isPending = true;
        hasPending_ = true;
    } catch (const PlatformError&) {
        forgetPending();
        throw;
    }
}

std::vector<BookReading::FileRemoval> BookReading::pendingRemovals() const
{
    std::vector<FileRemoval> removals;
    for (std::size_t i = 0; i < places_.size(); ++i) {
        const auto& place = places_[i];
        if (!place.isPending || place.isRemoved) {
            continue;
        }
        // The people of one file stand next to each other.
        if (removals.empty() || removals.back().file != place.file) {
            removals.push_back({place.file, files_[place.file].removed, {}});
        }
        removals.back().ranges.push_back(place.range);
        removals.back().people.push_back(i);
    }
    for (auto& removal : removals) {
        std::sort(removal.ranges.begin(), removal.ranges.end(),
                  [](const ByteRange& a, const ByteRange& b) { return a.begin < b.begin; });
    }
    return removals;
}

Pieces BookReading::without(std::string_view bytes, const std::vector<ByteRange>& ranges)
{
    Pieces pieces;
    std::size_t position = 0;
    for (const auto& range : ranges) {
        if (range.begin > position) {
            pieces.push_back(bytes.substr(position, range.begin - position));
        }
        position = range.end;
    }
    if (position < bytes.size()) {
        pieces.push_back(bytes.substr(position));
    }
    return pieces;
}

void BookReading::save()
{
    if (!hasPending_) {
        return;
    }
    auto removals = pendingRemovals();
    forgetPending();

    // First every file is locked, compared with what was read, and its new content written beside
    // it; only when all of that has worked does the first one change.
    std::vector<std::unique_ptr<FileChange>> changes;
    std::vector<bool> endsFile;
    for (const auto& removal : removals) {
        const auto& file = files_[removal.file];
        auto& change = *changes.emplace_back(
            std::make_unique<FileChange>(file.names, without(file.bytes.view(), file.removed)));
        const auto content = without(file.bytes.view(), removal.ranges);
        endsFile.push_back(isFolder_ && areBlank(content, file.encoding));
        if (endsFile.back()) {
            change.prepareRemoval();
        } else {
            change.prepare(content);
        }
    }
    for (const auto& change : changes) {
        change->checkUnchanged();
    }

    std::set<std::filesystem::path> folders;
    {
        // The user may quit at any moment, and a folder is one address book.
        const ShutdownInhibitor inhibitor;
        for (std::size_t i = 0; i < changes.size(); ++i) {
            try {
                if (endsFile[i]) {
                    changes[i]->remove();
                } else {
                    changes[i]->commit();
                }
            } catch (const PlatformError& error) {
                throw PlatformError(halfDone(error.what(), removals, i, changes[i]->hasBegun()));
            }
            apply(removals[i]);
            for (auto& folder : changes[i]->folders()) {
                folders.insert(std::move(folder));
            }
        }
    }
    for (const auto& folder : folders) {
        if (!syncFolder(folder)) {
            throw PlatformError(
                "The people were deleted, but a power failure could bring them back: " +
                quoted(folder) + " cannot be brought to the disk (" +
                std::generic_category().message(errno) + ").");
        }
    }
}

void BookReading::apply(FileRemoval& removal)
{
    files_[removal.file].removed = std::move(removal.ranges);
    for (const auto position : removal.people) {
        places_[position].isRemoved = true;
    }
    hasRemoved_ = true;
}

std::string BookReading::halfDone(const std::string& reason,
                                  const std::vector<FileRemoval>& removals, std::size_t doneCount,
                                  bool nextHasBegun) const
{
    if (removals.size() == 1) {
        return reason;
    }
    const auto namesOf = [&](std::size_t first, std::size_t last) {
        std::string names;
        for (auto i = first; i < last; ++i) {
            names += (names.empty() ? "" : ", ") +
                     shown(files_[removals[i].file].names.front().filename());
        }
        return names.empty() ? "none" : names;
    };
    return reason + " Files changed before that: " + namesOf(0, doneCount) +
           ". Files left as they were: " +
           namesOf(doneCount + (nextHasBegun ? 1 : 0), removals.size()) + ".";
}

FileEncoding BookReading::commonEncoding(std::span<const Person* const> people) const
{
    std::optional<FileEncoding> encoding;
    for (const auto* person : people) {
        const auto own = files_[places_[positionOf(*person)].file].encoding;
        if (encoding.value_or(own) != own) {
            throw PlatformError(
                "The people cannot stand in one backup: some of the cards are UTF-16 "
                "and others are not. Delete them in separate runs.");
        }
        encoding = own;
    }
    return encoding.value_or(FileEncoding::Bytes);
}

void BookReading::checkBackUp(std::span<const Person* const> people) const
{
    commonEncoding(people);
}

void BookReading::backUp(std::span<const Person* const> people,
                         const std::filesystem::path& path) const
{
    const auto encoding = commonEncoding(people);
    const auto mark = byteOrderMarkOf(encoding);
    const auto lineEnd = lineEndIn(encoding);
    Pieces pieces{mark};
    for (const auto* person : people) {
        const auto& place = places_[positionOf(*person)];
        pieces.push_back(files_[place.file].bytes.view().substr(
            place.range.begin, place.range.end - place.range.begin));
        if (!place.hasLineEnd) {
            pieces.emplace_back(lineEnd);
        }
    }
    writeNewFile(path, pieces);
}

}  // namespace dunmora
