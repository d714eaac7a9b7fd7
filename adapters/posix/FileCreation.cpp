#include "adapters/posix/FileCreation.h"

#include "adapters/posix/DisplacedFile.h"
#include "adapters/posix/FileError.h"
#include "adapters/posix/FileExchange.h"
#include "adapters/posix/TemporaryName.h"
#include "text/DisplayText.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <exception>
#include <system_error>
#include <utility>

namespace dunmora {

namespace {

/// Moves whatever is at `path` to a temporary name that never means "unused", and returns it.
/// Errors: an empty path, and errno.
std::filesystem::path movedAside(const std::filesystem::path& path)
{
    std::filesystem::path aside;
    const auto rename = [&](const std::filesystem::path& temporary) {
        aside = temporary;
        return renameToNewName(path, temporary);
    };
    return useTemporaryPath(path, FileIdentity(), rename) ? aside : std::filesystem::path();
}

/// Puts back what another program has put in the place of the new file.
std::string putBack(const std::filesystem::path& aside, const std::filesystem::path& path)
{
    return renameToNewName(aside, path)
               ? quotedPath(path) + " stays because another program has changed it meanwhile."
               : couldNotBeRestored(path, aside, errno);
}

std::string couldNotBeRemoved(const std::filesystem::path& path, int error)
{
    return quotedPath(path) + " has been created and could not be removed again: " +
           std::generic_category().message(error) + ".";
}

}  // namespace

FileCreation::FileCreation(NewNames names, const FileMetadata& metadata, Pieces content)
    : content_(std::move(content)),
      newFile_(names.targets.front(), names.targets.front(), content_, [&](const Descriptor& file) {
          remarks_ = setMetadata(metadata, file, names.targets.front());
      })
{
    for (auto& target : names.targets) {
        places_.push_back({std::move(target), {}});
    }
    for (auto& link : names.links) {
        links_.push_back({std::move(link), {}});
    }
}

void FileCreation::closeFiles()
{
    nameNewFile();
    newFile_.close();
}

void FileCreation::nameNewFile()
{
    for (auto& place : places_) {
        if (place.temporary.empty()) {
            place.temporary = newFile_.nameBeside(place.target);
        }
    }
}

void FileCreation::checkUnchanged() const
{
    const auto check = [&](const std::filesystem::path& path) {
        struct stat existing {};
        if (lstat(path.c_str(), &existing) == 0) {
            throwFileError(path, kCannotBeCreated, EEXIST);
        }
    };
    for (const auto& place : places_) {
        check(place.target);
    }
    for (const auto& place : links_) {
        check(place.link.path);
    }
}

void FileCreation::apply()
{
    nameNewFile();
    for (auto& place : places_) {
        put(place);
    }
    // Links last: a failure in between must not leave a broken link.
    for (auto& place : links_) {
        put(place);
    }
}

void FileCreation::put(Place& place)
{
    newFile_.keep(place.temporary);
    if (!renameToNewName(place.temporary, place.target)) {
        const int error = errno;
        newFile_.takeBack(place.temporary);
        throwFileError(place.target, kCannotBeCreated, error);
    }
    place.isTaken = true;
}

void FileCreation::put(LinkPlace& place)
{
    if (symlink(place.link.text.c_str(), place.link.path.c_str()) != 0) {
        throwFileError(place.link.path, kCannotBeCreated, errno);
    }
    place.isTaken = true;
    struct stat status {};
    if (lstat(place.link.path.c_str(), &status) == 0) {
        place.identity = identityOf(status);
    }
}

std::string FileCreation::revert()
{
    std::string sentences;
    for (auto i = links_.size(); i > 0; --i) {
        if (links_[i - 1].isTaken) {
            appendSentences(sentences, takeBack(links_[i - 1]));
        }
    }
    for (auto i = places_.size(); i > 0; --i) {
        if (places_[i - 1].isTaken) {
            appendSentences(sentences, takeBack(places_[i - 1]));
        }
    }
    return sentences;
}

/// What comes out must be the file as it was prepared. Anything else belongs to somebody else.
std::string FileCreation::takeBack(Place& place) const
{
    const auto aside = movedAside(place.target);
    if (aside.empty() && errno != ENOENT) {
        return couldNotBeRemoved(place.target, errno);
    }
    place.isTaken = false;
    if (aside.empty()) {
        return {};
    }
    try {
        DisplacedFile unused(place.target, newFile_.identity(), content_);
        unused.addName(aside);
        unused.check(OpenFiles::Keep);
        unused.checkAgain();
        return unused.remove();
    } catch (const std::exception&) {
        // Also without enough memory for the check: in doubt the file stays.
        place.isTaken = true;
        return putBack(aside, place.target);
    }
}

std::string FileCreation::takeBack(LinkPlace& place)
{
    const auto aside = movedAside(place.link.path);
    if (aside.empty() && errno != ENOENT) {
        return couldNotBeRemoved(place.link.path, errno);
    }
    place.isTaken = false;
    if (aside.empty()) {
        return {};
    }
    struct stat status {};
    if (lstat(aside.c_str(), &status) != 0 || identityOf(status) != place.identity) {
        place.isTaken = true;
        return putBack(aside, place.link.path);
    }
    return unlink(aside.c_str()) == 0 ? std::string() : couldNotBeRemoved(aside, errno);
}

std::vector<std::filesystem::path> FileCreation::changedPaths() const
{
    std::vector<std::filesystem::path> paths;
    for (const auto& place : places_) {
        if (place.isTaken) {
            paths.push_back(place.target);
        }
    }
    for (const auto& place : links_) {
        if (place.isTaken) {
            paths.push_back(place.link.path);
        }
    }
    return paths;
}

std::vector<std::filesystem::path> FileCreation::folders() const
{
    std::vector<std::filesystem::path> folders;
    for (const auto& place : places_) {
        folders.push_back(place.target.parent_path());
    }
    for (const auto& place : links_) {
        folders.push_back(place.link.path.parent_path());
    }
    return folders;
}

}  // namespace dunmora
