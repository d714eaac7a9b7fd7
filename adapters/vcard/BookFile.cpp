#include "adapters/vcard/BookFile.h"

#include "adapters/posix/FileCopy.h"
#include "adapters/vcard/TextDecoding.h"
#include "platform/PlatformError.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <string>
#include <system_error>
#include <utility>

namespace dunmora {

namespace {

/// The failure of the last system call, in words: “book.vcf” cannot be read: Permission denied.
[[noreturn]] void fail(const std::filesystem::path& path, const std::string& what, int error)
{
    throw PlatformError(quoted(path) + " " + what + ": " + std::generic_category().message(error) +
                        ".");
}

[[noreturn]] void failChanged(const std::filesystem::path& path)
{
    throw PlatformError(quoted(path) + " has changed since it was read. Read it again first.");
}

constexpr auto kCannotBeRead = "cannot be read";
constexpr auto kCannotBeChanged = "cannot be changed";
constexpr auto kCannotBeRemoved = "cannot be removed";

std::size_t sizeOf(const Pieces& content)
{
    std::size_t size = 0;
    for (const auto piece : content) {
        size += piece.size();
    }
    return size;
}

bool writeAll(const Descriptor& file, const Pieces& content)
{
    constexpr std::size_t kBufferSize = std::size_t(1) << 20U;
    std::string buffer;
    buffer.reserve(std::min(sizeOf(content), kBufferSize));
    for (const auto piece : content) {
        if (buffer.size() + piece.size() > kBufferSize) {
            if (!writeAll(file, buffer)) {
                return false;
            }
            buffer.clear();
        }
        if (piece.size() > kBufferSize) {
            if (!writeAll(file, piece)) {
                return false;
            }
        } else {
            buffer += piece;
        }
    }
    return writeAll(file, buffer);
}

/// Whether the rest of the file is exactly this.
/// Errors: PlatformError when it cannot be read.
bool holds(const Descriptor& file, const Pieces& content, const std::filesystem::path& path)
{
    constexpr std::size_t kBufferSize = std::size_t(1) << 18U;
    std::vector<char> buffer(std::clamp<std::size_t>(sizeOf(content), 1, kBufferSize));
    const auto matchesPiece = [&](std::string_view piece) {
        while (!piece.empty()) {
            const auto wanted = std::min(piece.size(), buffer.size());
            const auto count = readSome(file, buffer.data(), wanted);
            if (count < 0) {
                fail(path, kCannotBeRead, errno);
            }
            const auto got = static_cast<std::size_t>(count);
            if (got == 0 || std::memcmp(buffer.data(), piece.data(), got) != 0) {
                return false;
            }
            piece.remove_prefix(got);
        }
        return true;
    };
    return std::all_of(content.begin(), content.end(), matchesPiece) &&
           readSome(file, buffer.data(), 1) == 0;
}

struct stat statusOf(const Descriptor& file, const std::filesystem::path& path)
{
    struct stat status {};
    if (fstat(file.number(), &status) != 0) {
        fail(path, kCannotBeRead, errno);
    }
    return status;
}

/// The system lets root write without a write bit; whoever took the bits away meant it all the
/// same. Errors: PlatformError when there is none.
void checkWriteBits(const struct stat& status, const std::filesystem::path& path)
{
    if ((status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) {
        throw PlatformError(quoted(path) + " cannot be changed: it is read-only.");
    }
}

FileIdentity identityOf(const struct stat& status)
{
    return {status.st_dev, status.st_ino};
}

bool sameTime(const timespec& a, const timespec& b)
{
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

/// A name in the folder that no file has, and that no reader of the folder takes for a card's.
std::filesystem::path freshName(const std::filesystem::path& folder)
{
    // No harm is done by a name that is taken after all: no file is written over.
    std::array<unsigned char, 6> random{};
    static_cast<void>(getentropy(random.data(), random.size()));
    std::string name = ".dunmora-";
    for (const auto byte : random) {
        name += static_cast<char>('a' + byte % 16);
        name += static_cast<char>('a' + byte / 16);
    }
    return folder / name;
}

#ifdef O_TMPFILE
constexpr int kNamelessFile = O_TMPFILE;
#else
constexpr int kNamelessFile = 0;
#endif

std::string descriptorPath(const Descriptor& file)
{
    return "/proc/self/fd/" + std::to_string(file.number());
}

constexpr mode_t kOwnerOnly = S_IRUSR | S_IWUSR;

/// A new file in the folder that has no name, so that a program that is killed leaves nothing
/// behind; not open where that cannot be had.
Descriptor makeNamelessFile(const std::filesystem::path& folder)
{
    if constexpr (kNamelessFile != 0) {
        auto file = openFile(folder, kNamelessFile | O_RDWR, kOwnerOnly);
        // It gets a name by way of this one.
        if (file.isOpen() && access(descriptorPath(file).c_str(), F_OK) == 0) {
            return file;
        }
    }
    return Descriptor();
}

/// The path with all links resolved. Errors: PlatformError about `name`.
std::filesystem::path resolved(const std::filesystem::path& path, const std::filesystem::path& name)
{
    std::error_code error;
    auto full = std::filesystem::canonical(path, error);
    if (error) {
        fail(name, kCannotBeChanged, error.value());
    }
    return full;
}

}  // namespace

std::string shown(const std::filesystem::path& path)
{
    constexpr std::string_view kReplacement = "\xEF\xBF\xBD";
    std::string text;
    for (const char c : toUtf8(path.string(), "")) {
        if (c == '\x7F' || (c >= '\0' && c < ' ')) {
            text += kReplacement;
        } else {
            text += c;
        }
    }
    return text;
}

std::string quoted(const std::filesystem::path& path)
{
    return "“" + shown(path) + "”";
}

FileBytes::Memory FileBytes::allocate(std::size_t size)
{
    return std::make_unique_for_overwrite<Memory::element_type[]>(size);  // NOLINT(*-c-arrays)
}

FileBytes::FileBytes(Memory memory, std::size_t size) : memory_(std::move(memory)), size_(size) {}

ReadFile readFile(const std::filesystem::path& path)
{
    const auto file = openFile(path, O_RDONLY);
    if (!file.isOpen()) {
        fail(path, kCannotBeRead, errno);
    }
    const auto status = statusOf(file, path);
    if (!S_ISREG(status.st_mode)) {
        throw PlatformError(quoted(path) + " is neither a file nor a folder.");
    }
    // One byte more than the file has shows its end, and a file that grows meanwhile.
    std::size_t capacity = static_cast<std::size_t>(status.st_size) + 1;
    auto bytes = FileBytes::allocate(capacity);
    std::size_t size = 0;
    while (true) {
        const auto count = readSome(file, bytes.get() + size, capacity - size);
        if (count < 0) {
            fail(path, kCannotBeRead, errno);
        }
        if (count == 0) {
            break;
        }
        size += static_cast<std::size_t>(count);
        if (size == capacity) {
            auto larger = FileBytes::allocate(2 * capacity);
            std::memcpy(larger.get(), bytes.get(), size);
            bytes = std::move(larger);
            capacity *= 2;
        }
    }
    return {identityOf(status), FileBytes(std::move(bytes), size)};
}

FileChange::FileChange(std::vector<std::filesystem::path> names, const Pieces& expected)
    : names_(std::move(names))
{
    for (const auto& name : names_) {
        auto target = resolved(name, name);
        const auto folder = name.has_parent_path() ? name.parent_path() : ".";
        auto entry = resolved(folder, name) / name.filename();
        if (entry != target) {
            links_.push_back(std::move(entry));
        }
        if (std::find(targets_.begin(), targets_.end(), target) == targets_.end()) {
            targets_.push_back(std::move(target));
        }
    }

    const auto& name = names_.front();
    file_ = openFile(targets_.front(), O_RDWR | O_NOFOLLOW);
    if (!file_.isOpen()) {
        const int error = errno;
        struct stat status {};
        if (error == EACCES && stat(targets_.front().c_str(), &status) == 0) {
            checkWriteBits(status, name);
        }
        fail(name, kCannotBeChanged, error);
    }
    compared_ = statusOf(file_, name);
    if (!S_ISREG(compared_.st_mode)) {
        failChanged(name);
    }
    checkWriteBits(compared_, name);
    if (flock(file_.number(), LOCK_EX | LOCK_NB) != 0) {
        if (errno == EWOULDBLOCK) {
            throw PlatformError(quoted(name) +
                                " cannot be changed: another program is changing it just now.");
        }
        fail(name, "cannot be locked", errno);
    }
    checkUnchanged();
    if (!holds(file_, expected, name)) {
        failChanged(name);
    }
}

const Descriptor& FileChange::prepared() const
{
    return named_ ? named_->descriptor() : nameless_;
}

void FileChange::prepare(const Pieces& content)
{
    const auto& name = names_.front();
    checkFolders(targets_, kCannotBeChanged);
    const auto folder = targets_.front().parent_path();
    nameless_ = makeNamelessFile(folder);
    if (!nameless_.isOpen()) {
        named_.emplace(freshName(folder), O_RDWR, kOwnerOnly);
    }
    if (!prepared().isOpen()) {
        fail(name, kCannotBeChanged, errno);
    }
    if (!writeAll(prepared(), content)) {
        fail(name, kCannotBeChanged, errno);
    }
    const auto made = statusOf(prepared(), name);
    const bool isOthers = made.st_uid != compared_.st_uid || made.st_gid != compared_.st_gid;
    if (isOthers && fchown(prepared().number(), compared_.st_uid, compared_.st_gid) != 0) {
        fail(name, "cannot be changed without changing its owner", errno);
    }
    constexpr mode_t kAllModeBits = 07777;
    // Changing the owner clears some of the mode's bits.
    if ((isOthers || made.st_mode != compared_.st_mode) &&
        fchmod(prepared().number(), compared_.st_mode & kAllModeBits) != 0) {
        fail(name, "cannot be changed without changing its mode", errno);
    }
    if (!copyAttributes(file_, prepared())) {
        fail(name, "cannot be changed without losing extended attributes", errno);
    }
    if (!syncFile(prepared())) {
        fail(name, kCannotBeChanged, errno);
    }
}

void FileChange::prepareRemoval() const
{
    checkFolders(links_, kCannotBeRemoved);
    checkFolders(targets_, kCannotBeRemoved);
}

void FileChange::checkFolders(const std::vector<std::filesystem::path>& entries,
                              const std::string& whatFails) const
{
    for (const auto& entry : entries) {
        if (faccessat(AT_FDCWD, entry.parent_path().c_str(), W_OK | X_OK, AT_EACCESS) != 0) {
            fail(names_.front(), whatFails + ": nothing can be written to its folder", errno);
        }
    }
}

void FileChange::checkUnchanged() const
{
    const auto now = statusOf(file_, names_.front());
    // The time of the last change of anything cannot be set back, unlike that of the content.
    if (now.st_size != compared_.st_size || !sameTime(contentTime(now), contentTime(compared_)) ||
        !sameTime(changeTime(now), changeTime(compared_))) {
        failChanged(names_.front());
    }
    for (const auto& target : targets_) {
        struct stat named {};
        if (lstat(target.c_str(), &named) != 0 || identityOf(named) != identityOf(compared_)) {
            failChanged(names_.front());
        }
    }
}

void FileChange::commit()
{
    checkUnchanged();
    for (const auto& target : targets_) {
        replace(target);
        done_.push_back(target);
    }
}

void FileChange::replace(const std::filesystem::path& target)
{
    // The last use takes the prepared file itself: not every file system has links.
    const bool isLast = &target == &targets_.back();
    if (named_ && isLast) {
        if (!named_->finishAs(target)) {
            failAt(target, kCannotBeChanged, errno);
        }
        return;
    }
    const auto source = named_ ? named_->path().string() : descriptorPath(nameless_);
    const auto name = freshName(target.parent_path());
    if (linkat(AT_FDCWD, source.c_str(), AT_FDCWD, name.c_str(), AT_SYMLINK_FOLLOW) != 0) {
        failAt(target, kCannotBeChanged, errno);
    }
    if (rename(name.c_str(), target.c_str()) != 0) {
        const int error = errno;
        unlink(name.c_str());
        failAt(target, kCannotBeChanged, error);
    }
}

void FileChange::remove()
{
    checkUnchanged();
    // Links go first: whatever happens in between, none is left that leads nowhere.
    auto doomed = links_;
    doomed.insert(doomed.end(), targets_.begin(), targets_.end());
    for (const auto& path : doomed) {
        if (unlink(path.c_str()) != 0) {
            failAt(path, kCannotBeRemoved, errno);
        }
        done_.push_back(path);
    }
}

void FileChange::failAt(const std::filesystem::path& path, const std::string& what, int error) const
{
    if (done_.empty()) {
        fail(names_.front(), what, error);
    }
    std::string others;
    for (const auto& done : done_) {
        others += (others.empty() ? "" : ", ") + quoted(done);
    }
    throw PlatformError(quoted(path) + " " + what + ": " + std::generic_category().message(error) +
                        ". Other names of the same file were done before that: " + others + ".");
}

std::vector<std::filesystem::path> FileChange::folders() const
{
    std::vector<std::filesystem::path> folders;
    for (const auto& entry : done_) {
        folders.push_back(entry.parent_path());
    }
    return folders;
}

void writeNewFile(const std::filesystem::path& path, const Pieces& content)
{
    UnfinishedFile file(path, O_WRONLY, kOwnerOnly);
    if (!file.descriptor().isOpen()) {
        fail(path, "cannot be made", errno);
    }
    if (!writeAll(file.descriptor(), content) || !syncFile(file.descriptor())) {
        fail(path, "cannot be written", errno);
    }
    const auto folder = path.has_parent_path() ? path.parent_path() : ".";
    if (!syncFolder(folder)) {
        fail(path, "cannot be brought to the disk", errno);
    }
    file.finish();
}

}  // namespace dunmora
