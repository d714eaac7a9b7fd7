#include "adapters/posix/FileMetadata.h"

#include "adapters/posix/FileError.h"
#include "text/DisplayText.h"

#include <unistd.h>

namespace dunmora {

namespace {

constexpr mode_t kAllModeBits = 07777;

}  // namespace

FileMetadata metadataOf(const Descriptor& file, const struct stat& status)
{
    return {status.st_mode & kAllModeBits, status.st_uid, status.st_gid, attributesOf(file)};
}

std::string setMetadata(const FileMetadata& metadata, const Descriptor& file,
                        const std::filesystem::path& name)
{
    std::string sentences;
    struct stat created {};
    const bool isKnown = fstat(file.number(), &created) == 0;
    const auto owner = metadata.owner.value_or(created.st_uid);
    const auto group = metadata.group.value_or(created.st_gid);
    if ((!isKnown || owner != created.st_uid || group != created.st_gid) &&
        fchown(file.number(), owner, group) != 0) {
        appendSentences(sentences, quotedPath(name) + " could not be given its owner again.");
    }
    // After the owner: fchown clears some of the mode's bits.
    if (fchmod(file.number(), metadata.mode) != 0) {
        appendSentences(sentences, quotedPath(name) + " could not be given its permissions again.");
    }
    if (metadata.attributes && !setAttributes(*metadata.attributes, file)) {
        appendSentences(sentences,
                        quotedPath(name) + " could not be given its extended attributes again.");
    }
    return sentences;
}

}  // namespace dunmora
