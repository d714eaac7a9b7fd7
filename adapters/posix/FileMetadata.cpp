#include "adapters/posix/FileMetadata.h"

#include "adapters/posix/FileError.h"
#include "text/DisplayText.h"

#include <unistd.h>

namespace dunmora {

namespace {

constexpr mode_t kAllModeBits = 07777;

/// What a file has been given back.
enum class Ownership { Both, Group, Neither };

Ownership giveBack(const FileMetadata& metadata, const Descriptor& file)
{
    struct stat created {};
    const bool isKnown = fstat(file.number(), &created) == 0;
    const auto owner = metadata.owner.value_or(created.st_uid);
    const auto group = metadata.group.value_or(created.st_gid);
    if ((isKnown && owner == created.st_uid && group == created.st_gid) ||
        fchown(file.number(), owner, group) == 0) {
        return Ownership::Both;
    }
    // Only root can give a file away, but its owner can choose one of the own groups.
    constexpr auto kSameOwner = static_cast<uid_t>(-1);
    const bool hasGroup =
        (isKnown && group == created.st_gid) || fchown(file.number(), kSameOwner, group) == 0;
    return hasGroup ? Ownership::Group : Ownership::Neither;
}

}  // namespace

FileMetadata metadataOf(const Descriptor& file, const struct stat& status)
{
    return {status.st_mode & kAllModeBits, status.st_uid, status.st_gid, attributesOf(file)};
}

std::string setMetadata(const FileMetadata& metadata, const Descriptor& file,
                        const std::filesystem::path& name)
{
    std::string sentences;
    auto mode = metadata.mode;
    switch (giveBack(metadata, file)) {
    case Ownership::Both:
        break;
    case Ownership::Group:
        sentences = quotedPath(name) + " could not be given its owner again.";
        break;
    case Ownership::Neither:
        // They were meant for the members of another group.
        mode &= ~static_cast<mode_t>(S_IRWXG);
        sentences = quotedPath(name) +
                    " could not be given its owner and group again. Its new group has no access "
                    "to it.";
        break;
    }
    // After the owner: fchown clears some of the mode's bits.
    if (fchmod(file.number(), mode) != 0) {
        appendSentences(sentences, quotedPath(name) + " could not be given its permissions again.");
    }
    if (metadata.attributes && !setAttributes(*metadata.attributes, file)) {
        appendSentences(sentences,
                        quotedPath(name) + " could not be given its extended attributes again.");
    }
    return sentences;
}

}  // namespace dunmora
