#include "adapters/vcard/Deletion.h"

#include "adapters/posix/Descriptor.h"
#include "adapters/vcard/AddedCards.h"
#include "platform/PlatformError.h"

#include <fcntl.h>

#include <numeric>
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
    record.before = contentHash(file.without(file.removed()));
    return record;
}

}  // namespace

RemovedFile removedFrom(const CardFile& file, const CardFile::Ranges& removed,
                        const LockedFile& locked)
{
    auto record = recordOf(file, locked);
    record.after = contentHash(file.without(removed));
    const auto sizeOfAll = [](const CardFile::Ranges& ranges) {
        return std::accumulate(ranges.begin(), ranges.end(), std::size_t{0},
                               [](std::size_t size, const ByteRange& range) {
                                   return size + range.end - range.begin;
                               });
    };
    record.bytes.reserve(sizeOfAll(removed) - sizeOfAll(file.removed()));
    record.parts.reserve(removed.size() - file.removed().size());
    auto earlier = file.removed().begin();
    std::size_t cutOut = 0;
    for (const auto& range : removed) {
        const auto size = range.end - range.begin;
        if (earlier != file.removed().end() && earlier->begin == range.begin) {
            ++earlier;
        } else {
            const auto begin = record.bytes.size();
            record.bytes += file.bytes().substr(range.begin, size);
            record.parts.push_back({range.begin - cutOut, {begin, record.bytes.size()}});
        }
        cutOut += size;
    }
    record.people = record.parts.size();
    return record;
}

RemovedFile removedWith(const CardFile& file, const LockedFile& locked)
{
    auto record = recordOf(file, locked);
    record.isWholeFile = true;
    for (const auto piece : file.without(file.removed())) {
        record.bytes += piece;
    }
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

std::string Deletion::cards() const
{
    std::string content;
    for (const auto& file : files) {
        if (file.encoding != files.front().encoding) {
            throw PlatformError(
                "One file cannot hold these people: some of their cards are UTF-16 and others are "
                "not.");
        }
        const auto removed = cardFileOf(file.names.front(), file.bytes);
        const AddedCards cards(removed);
        for (const auto& card : cards.all()) {
            content += card.bytes;
            content += card.lineEnd.empty() ? lineEndIn(file.encoding) : card.lineEnd;
        }
    }
    return files.empty() ? content : byteOrderMarkOf(files.front().encoding) + content;
}

}  // namespace dunmora
