#include "adapters/posix/DisplacedFile.h"

#include "adapters/posix/FileComparison.h"
#include "adapters/posix/FileError.h"
#include "platform/PlatformError.h"
#include "text/DisplayText.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

namespace dunmora {

namespace {

/// Deletes the file unless another one is in its place. Errors: false, and errno.
bool removeFile(const std::filesystem::path& path, const FileIdentity& identity)
{
    struct stat now {};
    if (lstat(path.c_str(), &now) != 0) {
        return errno == ENOENT;
    }
    return identityOf(now) != identity || unlink(path.c_str()) == 0;
}

}  // namespace

DisplacedFile::DisplacedFile(std::filesystem::path name, FileIdentity identity, Pieces content)
    : name_(std::move(name)), identity_(identity), content_(std::move(content))
{
}

void DisplacedFile::addName(std::filesystem::path temporary)
{
    names_.push_back({std::move(temporary), identity_});
}

void DisplacedFile::addLink(std::filesystem::path temporary, FileIdentity link)
{
    names_.push_back({std::move(temporary), link, true});
}

void DisplacedFile::check(OpenFiles openFiles)
{
    // Without an exchange there is nothing to check.
    if (names_.empty()) {
        return;
    }
    checkNames();
    auto file = open();
    // Before the content is read, so that a program that opens the file meanwhile is noticed.
    const WriterWatch watch(file);
    checkWriters(watch);
    if (!hasContent(file, content_, name_)) {
        throwChanged(name_);
    }
    status_ = statusOf(file, name_);
    if (openFiles == OpenFiles::Keep) {
        descriptor_ = std::move(file);
        watch_ = watch;
    }
}

void DisplacedFile::checkAgain() const
{
    if (names_.empty()) {
        return;
    }
    checkNames();
    if (watch_) {
        checkWriters(*watch_);
        checkStatus(descriptor_);
        return;
    }
    const auto file = open();
    checkWriters(WriterWatch(file));
    checkStatus(file);
}

void DisplacedFile::checkNames() const
{
    for (const auto& name : names_) {
        struct stat now {};
        if (lstat(name.path.c_str(), &now) != 0 || identityOf(now) != name.identity) {
            throwChanged(name_);
        }
    }
}

/// Opens the file under one of its names, for reading only: a program that has it open for writing
/// would be found to be this one.
Descriptor DisplacedFile::open() const
{
    const auto name =
        std::find_if(names_.begin(), names_.end(), [](const Name& entry) { return !entry.isLink; });
    auto file = openFile(name->path, O_RDONLY | O_NOFOLLOW);
    if (!file.isOpen()) {
        throwFileError(name_, kCannotBeRead, errno);
    }
    if (identityOf(statusOf(file, name_)) != identity_) {
        throwChanged(name_);
    }
    return file;
}

void DisplacedFile::checkStatus(const Descriptor& file) const
{
    if (!isUnchanged(status_, statusOf(file, name_))) {
        throwChanged(name_);
    }
}

void DisplacedFile::checkWriters(const WriterWatch& watch) const
{
    if (watch.hasWriter()) {
        throw PlatformError(
            quotedPath(name_) +
            " cannot be changed: another program has it open for writing. Try again later.");
    }
}

std::string DisplacedFile::remove()
{
    std::string failures;
    for (const auto& name : names_) {
        if (!removeFile(name.path, name.identity)) {
            const int error = errno;
            appendSentences(failures, quotedPath(name.path) + ", the old content of " +
                                          quotedPath(name_) + ", could not be deleted: " +
                                          std::generic_category().message(error) + ".");
        }
    }
    names_.clear();
    return failures;
}

}  // namespace dunmora
