#include "adapters/posix/FileReplacement.h"

#include "adapters/posix/FileError.h"
#include "adapters/posix/FileExchange.h"
#include "adapters/posix/TemporaryName.h"
#include "text/DisplayText.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <exception>
#include <utility>

namespace dunmora {

FileReplacement::FileReplacement(LockedFile file, Pieces content,
                                 const std::optional<FileAttribute>& mark)
    : file_((file.checkFolders(file.targets(), kCannotBeChanged), std::move(file))),
      content_(std::move(content)),
      newFile_(file_, content_, mark),
      old_(file_.name(), identityOf(file_.status()), file_.expected())
{
}

void FileReplacement::closeFiles()
{
    nameNewFile();
    newFile_.close();
    file_.close();
    openFiles_ = OpenFiles::Close;
}

void FileReplacement::nameNewFile()
{
    if (places_.empty()) {
        for (const auto& target : file_.targets()) {
            places_.push_back({target, newFile_.nameBeside(target)});
        }
    }
}

void FileReplacement::apply()
{
    nameNewFile();
    // The last step before the exchange, which may be a mere rename.
    file_.checkUnchanged();
    for (auto& place : places_) {
        put(place);
    }
}

void FileReplacement::put(Place& place)
{
    newFile_.keep(place.temporary);
    if (exchangeFiles(place.temporary, place.target)) {
        place.state = State::Exchanged;
        old_.addName(place.temporary);
        return;
    }
    if (isUnsupported(errno) && std::rename(place.temporary.c_str(), place.target.c_str()) == 0) {
        place.state = State::Replaced;
        return;
    }
    const int error = errno;
    newFile_.takeBack(place.temporary);
    throwFileError(file_.name(), kCannotBeChanged, error);
}

void FileReplacement::checkOldFile()
{
    old_.check(openFiles_);
}

void FileReplacement::checkOldFileAgain() const
{
    old_.checkAgain();
}

std::string FileReplacement::finish()
{
    return old_.remove();
}

std::string FileReplacement::revert()
{
    std::string sentences;
    for (auto i = places_.size(); i > 0; --i) {
        auto& place = places_[i - 1];
        if (place.state == State::Exchanged) {
            appendSentences(sentences, putBack(place));
        }
    }
    return sentences;
}

/// What comes out must be the new file as it was prepared. Anything else belongs to somebody else.
std::string FileReplacement::putBack(Place& place)
{
    const auto rename = [&](const std::filesystem::path& name) {
        if (!renameToNewName(place.temporary, name)) {
            return false;
        }
        place.temporary = name;
        return true;
    };
    // From now on no later deletion may take the file under this name for an unused new one.
    if (!useTemporaryPath(place.target, FileIdentity(), rename) ||
        !exchangeFiles(place.temporary, place.target)) {
        return couldNotBeRestored(place.target, place.temporary, errno);
    }
    place.state = State::Prepared;
    try {
        DisplacedFile unused(place.target, newFile_.identity(), content_);
        unused.addName(place.temporary);
        unused.check(OpenFiles::Keep);
        unused.checkAgain();
        return unused.remove();
    } catch (const std::exception&) {
        // Also without enough memory for the check: in doubt the file stays.
        return quotedPath(place.temporary) + " may hold what another program has written to " +
               quotedPath(place.target) + " meanwhile.";
    }
}

std::vector<std::filesystem::path> FileReplacement::changedPaths() const
{
    std::vector<std::filesystem::path> paths;
    for (const auto& place : places_) {
        if (place.state != State::Prepared) {
            paths.push_back(place.target);
        }
    }
    return paths;
}

std::vector<std::filesystem::path> FileReplacement::folders() const
{
    std::vector<std::filesystem::path> folders;
    for (const auto& target : file_.targets()) {
        folders.push_back(target.parent_path());
    }
    return folders;
}

}  // namespace dunmora
