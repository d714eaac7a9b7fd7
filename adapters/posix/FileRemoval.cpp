#include "adapters/posix/FileRemoval.h"

#include "adapters/posix/FileComparison.h"
#include "adapters/posix/FileError.h"
#include "adapters/posix/FileExchange.h"
#include "adapters/posix/TemporaryName.h"

#include <sys/stat.h>

#include <cerrno>
#include <utility>

namespace dunmora {

FileRemoval::FileRemoval(LockedFile file)
    : file_(std::move(file)), old_(file_.name(), identityOf(file_.status()), file_.expected())
{
    file_.checkFolders(file_.links(), kCannotBeRemoved);
    file_.checkFolders(file_.targets(), kCannotBeRemoved);
    // Links first: a failure in between must not leave a broken link.
    for (const auto& link : file_.links()) {
        struct stat status {};
        if (lstat(link.c_str(), &status) != 0) {
            throwChanged(file_.name());
        }
        places_.push_back({link, identityOf(status), true, {}});
    }
    for (const auto& target : file_.targets()) {
        places_.push_back({target, identityOf(file_.status()), false, {}});
    }
}

void FileRemoval::closeFiles()
{
    file_.close();
    openFiles_ = OpenFiles::Close;
}

void FileRemoval::apply()
{
    file_.checkUnchanged();
    for (auto& place : places_) {
        moveAway(place);
    }
}

void FileRemoval::moveAway(Place& place)
{
    const FileIdentity noNewFile{place.identity.device, 0};
    const auto rename = [&](const std::filesystem::path& temporary) {
        place.temporary = temporary;
        return renameToNewName(place.path, temporary);
    };
    if (!useTemporaryPath(place.path, noNewFile, rename)) {
        place.temporary.clear();
        throwFileError(file_.name(), kCannotBeRemoved, errno);
    }
    if (place.isLink) {
        old_.addLink(place.temporary, place.identity);
    } else {
        old_.addName(place.temporary);
    }
}

void FileRemoval::checkOldFile()
{
    old_.check(openFiles_);
}

void FileRemoval::checkOldFileAgain() const
{
    old_.checkAgain();
}

std::string FileRemoval::finish()
{
    return old_.remove();
}

std::string FileRemoval::revert()
{
    std::string sentences;
    for (auto i = places_.size(); i > 0; --i) {
        auto& place = places_[i - 1];
        if (place.temporary.empty()) {
            continue;
        }
        if (renameToNewName(place.temporary, place.path)) {
            place.temporary.clear();
        } else {
            appendSentences(sentences, couldNotBeRestored(place.path, place.temporary, errno));
        }
    }
    return sentences;
}

std::vector<std::filesystem::path> FileRemoval::changedPaths() const
{
    std::vector<std::filesystem::path> paths;
    for (const auto& place : places_) {
        if (!place.temporary.empty()) {
            paths.push_back(place.path);
        }
    }
    return paths;
}

std::vector<std::filesystem::path> FileRemoval::folders() const
{
    std::vector<std::filesystem::path> folders;
    for (const auto& place : places_) {
        folders.push_back(place.path.parent_path());
    }
    return folders;
}

}  // namespace dunmora
