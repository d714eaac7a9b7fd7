#include "adapters/posix/PreparedFile.h"

#include "adapters/posix/FileComparison.h"
#include "adapters/posix/FileContent.h"
#include "adapters/posix/FileError.h"
#include "adapters/posix/ReadAt.h"
#include "adapters/posix/TemporaryName.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <functional>
#include <string>
#include <utility>

namespace dunmora {

namespace {

#ifdef O_TMPFILE
constexpr int kNamelessFile = O_TMPFILE;
#else
constexpr int kNamelessFile = 0;
#endif

constexpr mode_t kOwnerOnly = S_IRUSR | S_IWUSR;

/// The path by which a file without a name can be opened and linked.
std::filesystem::path descriptorPath(const Descriptor& file)
{
    return "/proc/self/fd/" + std::to_string(file.number());
}

/// Creates a file without a name; not open where the system cannot do that or give it a name later.
Descriptor createNamelessFile(const std::filesystem::path& folder)
{
    if constexpr (kNamelessFile != 0) {
        auto file = openFile(folder, kNamelessFile | O_RDWR, kOwnerOnly);
        if (file.isOpen() && access(descriptorPath(file).c_str(), F_OK) == 0) {
            return file;
        }
    }
    return Descriptor();
}

/// A name for a file whose inode is not known yet.
std::filesystem::path unusedName(const std::filesystem::path& folder)
{
    static std::atomic<unsigned> count = 0;
    return folder /
           (std::string(kNewFilePrefix) + std::to_string(getpid()) + "-" + std::to_string(++count));
}

void copyMetadata(const LockedFile& from, const Descriptor& to)
{
    constexpr mode_t kAllModeBits = 07777;
    const auto& old = from.status();
    const auto created = statusOf(to, from.name());
    const bool hasOtherOwner = created.st_uid != old.st_uid || created.st_gid != old.st_gid;
    if (hasOtherOwner && fchown(to.number(), old.st_uid, old.st_gid) != 0) {
        throwFileError(from.name(), "cannot be changed without changing its owner", errno);
    }
    // fchown clears some of the mode's bits.
    if ((hasOtherOwner || created.st_mode != old.st_mode) &&
        fchmod(to.number(), old.st_mode & kAllModeBits) != 0) {
        throwFileError(from.name(), "cannot be changed without changing its permissions", errno);
    }
    if (!copyAttributes(from.descriptor(), to)) {
        throwFileError(from.name(), "cannot be changed without losing extended attributes", errno);
    }
}

}  // namespace

PreparedFile::PreparedFile(const LockedFile& old, const Pieces& content,
                           const std::optional<FileAttribute>& mark)
    : oldName_(old.name()), whatFails_(kCannotBeChanged)
{
    prepare(old.targets().front(), content, [&](const Descriptor& file) {
        copyMetadata(old, file);
        if (mark) {
            setAttribute(*mark, file);
        }
    });
}

PreparedFile::PreparedFile(std::filesystem::path name, const std::filesystem::path& target,
                           const Pieces& content,
                           const std::function<void(const Descriptor&)>& setMetadata)
    : oldName_(std::move(name)), whatFails_(kCannotBeCreated)
{
    prepare(target, content, setMetadata);
}

void PreparedFile::prepare(const std::filesystem::path& firstTarget, const Pieces& content,
                           const std::function<void(const Descriptor&)>& setMetadata)
{
    create(firstTarget);
    if (!writeAll(descriptor_, content)) {
        fail(errno);
    }
    setMetadata(descriptor_);
    if (!syncFile(descriptor_)) {
        fail(errno);
    }
    auto readable = openForReading();
    lock(readable);
    std::swap(descriptor_, readable);
    if (names_.empty()) {
        source_ = descriptorPath(descriptor_);
    }
}

void PreparedFile::create(const std::filesystem::path& firstTarget)
{
    descriptor_ = createNamelessFile(firstTarget.parent_path());
    if (descriptor_.isOpen()) {
        identity_ = identityOf(statusOf(descriptor_, oldName_));
    } else {
        createNamed(firstTarget);
    }
}

void PreparedFile::createNamed(const std::filesystem::path& firstTarget)
{
    // A killed process with the same id may have left a file of this name.
    do {
        names_.clear();
        names_.emplace_back(unusedName(firstTarget.parent_path()), O_RDWR, kOwnerOnly);
    } while (!names_.back().exists() && errno == EEXIST);
    auto& file = names_.back();
    if (!file.exists()) {
        fail(errno);
    }
    descriptor_ = file.takeDescriptor();
    identity_ = file.identity();
    lock(descriptor_);
    // Still empty: from now on its name tells whether it has taken its place.
    if (!useTemporaryPath(firstTarget, identity_,
                          [&](const auto& path) { return file.renameTo(path); })) {
        fail(errno);
    }
    source_ = file.path();
    isFirstTargetNamed_ = true;
}

Descriptor PreparedFile::openForReading() const
{
    const auto path = names_.empty() ? descriptorPath(descriptor_) : source_;
    auto file = openFile(path, O_RDONLY);
    if (!file.isOpen()) {
        fail(errno);
    }
    if (identityOf(statusOf(file, oldName_)) != identity_) {
        fail(ESTALE);
    }
    return file;
}

/// Shared, because the file is open twice for a moment.
void PreparedFile::lock(const Descriptor& file) const
{
    if (uninterrupted([&] { return flock(file.number(), LOCK_SH | LOCK_NB); }) != 0) {
        fail(errno);
    }
}

FileBytes PreparedFile::content() const
{
    if (lseek(descriptor_.number(), 0, SEEK_SET) != 0) {
        throwFileError(oldName_, kCannotBeRead, errno);
    }
    return readFile(descriptor_, oldName_).bytes;
}

bool PreparedFile::has(const Pieces& content) const
{
    return hasContent(descriptor_, content, oldName_);
}

std::size_t PreparedFile::readAt(std::span<char> place, std::size_t position) const
{
    return dunmora::readAt(descriptor_, oldName_, place, position);
}

std::filesystem::path PreparedFile::nameBeside(const std::filesystem::path& target)
{
    const auto link = [&](const std::filesystem::path& path) {
        if (names_.emplace_back(path, source_, identity_).exists()) {
            return true;
        }
        const int error = errno;
        names_.pop_back();
        errno = error;
        return false;
    };
    if (!std::exchange(isFirstTargetNamed_, false) && !useTemporaryPath(target, identity_, link)) {
        fail(errno);
    }
    // This name stays when the descriptor is closed.
    source_ = names_.back().path();
    return source_;
}

void PreparedFile::close()
{
    descriptor_ = Descriptor();
}

void PreparedFile::keep(const std::filesystem::path& name)
{
    at(name).finish();
}

void PreparedFile::takeBack(const std::filesystem::path& name)
{
    at(name).takeBack();
}

UnfinishedFile& PreparedFile::at(const std::filesystem::path& name)
{
    return *std::find_if(names_.begin(), names_.end(),
                         [&](const UnfinishedFile& file) { return file.path() == name; });
}

void PreparedFile::fail(int error) const
{
    throwFileError(oldName_, whatFails_, error);
}

}  // namespace dunmora
