#include "adapters/defaults/LockedFile.h"

#include "adapters/posix/UnfinishedFile.h"
#include "platform/PlatformError.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <system_error>

namespace dunmora {

namespace {

/// As many links as the kernel follows.
constexpr int kMostLinks = 40;

[[noreturn]] void fail(std::error_code reason)
{
    throw PlatformError(reason.message());
}

/// Ends with the reason of a system call that failed.
void require(bool succeeded)
{
    if (!succeeded) {
        fail({errno, std::generic_category()});
    }
}

struct stat statusOf(const Descriptor& descriptor)
{
    struct stat status = {};
    require(::fstat(descriptor.number(), &status) == 0);
    return status;
}

bool isStillNamed(const std::filesystem::path& file, const Descriptor& descriptor)
{
    const auto held = statusOf(descriptor);
    struct stat named = {};
    return ::stat(file.c_str(), &named) == 0 && named.st_dev == held.st_dev &&
           named.st_ino == held.st_ino;
}

std::string contentOf(const Descriptor& descriptor)
{
    const auto status = statusOf(descriptor);
    if (!S_ISREG(status.st_mode)) {
        fail(std::make_error_code(S_ISDIR(status.st_mode) ? std::errc::is_a_directory
                                                          : std::errc::not_supported));
    }
    require(::lseek(descriptor.number(), 0, SEEK_SET) == 0);
    std::string content;
    std::array<char, 4096> buffer{};
    for (;;) {
        const auto count = readSome(descriptor, buffer.data(), buffer.size());
        require(count >= 0);
        if (count == 0) {
            return content;
        }
        content.append(buffer.data(), static_cast<std::size_t>(count));
    }
}

/// Where a chain of links ends, also when nothing is there yet: renaming onto a link would put a
/// file in the place of the link that a user keeps in the folder.
std::filesystem::path followed(std::filesystem::path file)
{
    std::error_code error;
    for (int links = 0; std::filesystem::is_symlink(file, error); ++links) {
        if (links == kMostLinks) {
            fail(std::make_error_code(std::errc::too_many_symbolic_link_levels));
        }
        file = file.parent_path() / std::filesystem::read_symlink(file, error);
    }
    return file;
}

/// The XDG Base Directory rules ask that a folder made for them is the user's alone.
void makeFolder(const std::filesystem::path& folder)
{
    std::error_code error;
    if (folder.empty() || std::filesystem::is_directory(folder, error)) {
        return;
    }
    makeFolder(folder.parent_path());
    require(::mkdir(folder.c_str(), S_IRWXU) == 0 || errno == EEXIST);
}

void lock(const Descriptor& descriptor)
{
    int result = -1;
    do {
        result = ::flock(descriptor.number(), LOCK_EX);
    } while (result != 0 && errno == EINTR);
    require(result == 0);
}

/// The file itself is locked, so nothing else lies about. Who held it before may have put another
/// file in its place: then that one is the file to lock.
Descriptor held(const std::filesystem::path& file)
{
    makeFolder(file.parent_path());
    for (;;) {
        auto descriptor = openFile(file, O_RDWR | O_CREAT, S_IRUSR | S_IWUSR);
        require(descriptor.isOpen());
        lock(descriptor);
        if (isStillNamed(file, descriptor)) {
            return descriptor;
        }
    }
}

/// Makes the new file look like the one it replaces.
void takeOverOwnerAndMode(const Descriptor& descriptor, const struct stat& old)
{
    // Root acts for the user whose file it is; others cannot give files away and need not.
    if (::geteuid() == 0) {
        require(::fchown(descriptor.number(), old.st_uid, old.st_gid) == 0);
    }
    require(::fchmod(descriptor.number(), old.st_mode & ALLPERMS) == 0);
}

}  // namespace

std::string contentOf(const std::filesystem::path& file)
{
    const auto descriptor = openFile(file, O_RDONLY);
    if (!descriptor.isOpen() && (errno == ENOENT || errno == ENOTDIR)) {
        return {};
    }
    require(descriptor.isOpen());
    return contentOf(descriptor);
}

LockedFile::LockedFile(const std::filesystem::path& file)
    : file_(followed(file)), descriptor_(held(file_))
{
}

std::string LockedFile::read() const
{
    return contentOf(descriptor_);
}

void LockedFile::replace(std::string_view content) const
{
    // One name, not a new one each time: what a killed program left is removed by the next.
    auto beside = file_;
    beside += ".new";
    ::unlink(beside.c_str());
    UnfinishedFile fresh(beside, O_WRONLY, S_IRUSR | S_IWUSR);
    const auto& descriptor = fresh.descriptor();
    require(descriptor.isOpen());
    takeOverOwnerAndMode(descriptor, statusOf(descriptor_));
    require(writeAll(descriptor, content) && ::fsync(descriptor.number()) == 0);
    require(fresh.finishAs(file_));
    // The new name, too, has to reach the disk; where it does not, the content is in place all the
    // same.
    syncFolder(file_.parent_path() / ".");
}

std::filesystem::path LockedFile::moveAside(std::string_view suffix) const
{
    auto aside = file_;
    aside += suffix;
    const auto first = aside;
    std::error_code error;
    for (int number = 2; std::filesystem::exists(std::filesystem::symlink_status(aside, error));
         ++number) {
        aside = first;
        aside += "-" + std::to_string(number);
    }
    require(::rename(file_.c_str(), aside.c_str()) == 0);
    return aside;
}

}  // namespace dunmora
