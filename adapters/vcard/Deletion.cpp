#include "adapters/vcard/Deletion.h"

#include "adapters/posix/Descriptor.h"
#include "adapters/posix/FileBytes.h"
#include "adapters/vcard/AddedCards.h"
#include "platform/PlatformError.h"

#include <fcntl.h>

#include <algorithm>
#include <system_error>
#include <utility>

namespace dunmora {

namespace {

constexpr auto kRemainderMark = "user.dunmora.remainder";

RemovedFile recordOf(const CardFile& file, const LockedFile& locked)
{
    RemovedFile record;
    record.names = file.names();
    record.places.targets = locked.targets();
    for (const auto& link : locked.links()) {
        std::error_code error;
        record.places.links.push_back({link, std::filesystem::read_symlink(link, error)});
    }
    record.metadata = metadataOf(locked.descriptor(), locked.status());
    record.encoding = file.encoding();
    record.reading.file = &file;
    record.reading.earlier = file.removed();
    return record;
}

/// Calls `visit` with each range that the deletion has cut out of the file as it was read, and with
/// how many bytes have been cut out before it.
template <typename Visit>
void visitRemoved(const RemovedFile::Reading& reading, const Visit& visit)
{
    auto earlier = reading.earlier.begin();
    std::size_t cutOut = 0;
    for (const auto& range : reading.all) {
        if (earlier != reading.earlier.end() && earlier->begin == range.begin) {
            ++earlier;
        } else {
            visit(range, cutOut);
        }
        cutOut += range.end - range.begin;
    }
}

}  // namespace

Pieces RemovedFile::removedPieces() const
{
    if (reading.file == nullptr) {
        return {bytes};
    }
    if (isWholeFile) {
        return reading.file->without(reading.earlier);
    }
    Pieces pieces;
    pieces.reserve(people);
    visitRemoved(reading, [&](const ByteRange& range, std::size_t /*cutOut*/) {
        pieces.push_back(reading.file->bytes().substr(range.begin, range.end - range.begin));
    });
    return pieces;
}

void RemovedFile::copyFromReading()
{
    if (reading.file == nullptr) {
        return;
    }
    const auto hashBefore = contentHash(reading.file->without(reading.earlier));
    const auto hashAfter =
        isWholeFile ? ContentHash() : contentHash(reading.file->without(reading.all));
    const auto pieces = removedPieces();
    std::string copied;
    copied.reserve(sizeOf(pieces));
    for (const auto piece : pieces) {
        copied += piece;
    }
    std::vector<Part> copiedParts;
    if (!isWholeFile) {
        copiedParts.reserve(people);
        std::size_t begin = 0;
        visitRemoved(reading, [&](const ByteRange& range, std::size_t cutOut) {
            const auto end = begin + (range.end - range.begin);
            copiedParts.push_back({range.begin - cutOut, {begin, end}});
            begin = end;
        });
    }
    before = hashBefore;
    after = hashAfter;
    bytes = std::move(copied);
    parts = std::move(copiedParts);
    reading = {};
}

RemovedFile removedFrom(const CardFile& file, const CardFile::Ranges& removed,
                        const LockedFile& locked)
{
    auto record = recordOf(file, locked);
    record.reading.all = removed;
    record.people = removed.size() - file.removed().size();
    return record;
}

RemovedFile removedWith(const CardFile& file, const LockedFile& locked)
{
    auto record = recordOf(file, locked);
    record.isWholeFile = true;
    return record;
}

FileAttribute remainderMark(const Pieces& content)
{
    const auto hash = contentHash(content);
    return {kRemainderMark, std::to_string(hash.size) + ' ' + std::to_string(hash.high) + ' ' +
                                std::to_string(hash.low)};
}

Remainders remaindersOf(std::span<const Deletion> deletions)
{
    Remainders remainders;
    for (const auto& deletion : deletions) {
        for (const auto& removed : deletion.files) {
            if (!removed.isWholeFile) {
                remainders.insert(removed.after);
            }
        }
    }
    return remainders;
}

bool isRemainder(const CardFile& file, const Remainders& ofThisRun)
{
    const Pieces content = {file.bytes()};
    if (ofThisRun.contains(contentHash(content))) {
        return true;
    }
    const auto opened = openFile(file.names().front(), O_RDONLY | O_NONBLOCK);
    return opened.isOpen() && attributeOf(opened, kRemainderMark) == remainderMark(content).value;
}

std::size_t Deletion::people() const
{
    std::size_t count = 0;
    for (const auto& file : files) {
        count += file.people;
    }
    return count;
}

void Deletion::copyFromReading()
{
    for (auto& file : files) {
        file.copyFromReading();
    }
}

std::string Deletion::cards() const
{
    std::string content;
    for (const auto& file : files) {
        if (file.encoding != files.front().encoding) {
            throw PlatformError(
                "One file cannot hold these people: some of their cards are UTF-16 and others are "
                "not.");
        }
        const CardFile removed(file.names.front(), joined(file.removedPieces()));
        const AddedCards cards(removed);
        for (const auto& card : cards.all()) {
            content += card.bytes;
            content += card.lineEnd.empty() ? lineEndIn(file.encoding) : card.lineEnd;
        }
    }
    return files.empty() ? content : byteOrderMarkOf(files.front().encoding) + content;
}

}  // namespace dunmora
