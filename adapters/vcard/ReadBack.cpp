#include "adapters/vcard/ReadBack.h"

#include "adapters/posix/FileReplacement.h"
#include "adapters/vcard/CardFile.h"
#include "adapters/vcard/CardReader.h"
#include "adapters/vcard/ReadBackInParts.h"
#include "platform/PlatformError.h"
#include "text/DisplayText.h"

#include <cstddef>
#include <utility>

namespace dunmora {

namespace {

bool holdsExactly(const std::filesystem::path& name, FileBytes content,
                  const std::vector<RemainingCard>& expected)
{
    const CardFile file(name, std::move(content));
    CardReader reader;
    CardReader::Cards cards;
    file.read(reader, cards);
    if (cards.people.size() != expected.size()) {
        return false;
    }
    CardBytesFinder finder(file);
    for (std::size_t i = 0; i < expected.size(); ++i) {
        const auto [range, lineEndSize] = finder.bytesOf(cards.ranges[i]);
        const auto size = range.end - range.begin - lineEndSize;
        if (!expected[i].isReadAs(file.bytes().substr(range.begin, size), cards.people[i])) {
            return false;
        }
    }
    return true;
}

enum class Found { AsWritten, ReadDifferently, WrittenDifferently };

Found readBack(const std::filesystem::path& name, const FileReplacement& replacement,
               const std::vector<RemainingCard>& expected)
{
    const auto& newFile = replacement.newFile();
    if (isReadBackInParts(newFile, replacement.content(), expected)) {
        return Found::AsWritten;
    }
    // In parts it is only known that something is unusual.
    if (!newFile.has(replacement.content())) {
        return Found::WrittenDifferently;
    }
    return holdsExactly(name, newFile.content(), expected) ? Found::AsWritten
                                                           : Found::ReadDifferently;
}

}  // namespace

bool isReadBack(const std::filesystem::path& name, const FileReplacement& replacement,
                const std::vector<RemainingCard>& expected)
{
    return readBack(name, replacement, expected) == Found::AsWritten;
}

void checkReadBack(const std::filesystem::path& name, const FileReplacement& replacement,
                   const std::vector<RemainingCard>& expected)
{
    switch (readBack(name, replacement, expected)) {
    case Found::AsWritten:
        return;
    case Found::WrittenDifferently:
        throw PlatformError(quotedPath(name) + " was not changed: its new content could not be "
                                               "read back as it was written. Nobody was deleted.");
    case Found::ReadDifferently:
        throw PlatformError(
            quotedPath(name) +
            " was not changed: without the people to be deleted, others in it would be read "
            "differently. Nobody was deleted. Correct the skipped cards in it, or uncheck the "
            "people next to them.");
    }
}

}  // namespace dunmora
