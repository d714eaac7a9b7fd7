#include "adapters/posix/Leftover.h"

#include "adapters/posix/Descriptor.h"
#include "adapters/posix/LockedFolder.h"
#include "text/DisplayText.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <optional>
#include <system_error>
#include <utility>

namespace dunmora {

namespace {

Leftover::Kind kindOf(FileIdentity file, FileIdentity newFile)
{
    if (file == newFile) {
        return Leftover::Kind::Unused;
    }
    return file.inode == newFile.inode ? Leftover::Kind::Doubtful : Leftover::Kind::Replaced;
}

/// Calls `use` with every entry of the folder that has a name of ours.
template <typename Use>
void forEachTemporary(const std::filesystem::path& folder, const Use& use)
{
    std::error_code error;
    std::filesystem::directory_iterator entry(folder, error);
    while (!error && entry != std::filesystem::directory_iterator()) {
        if (entry->path().filename().native().starts_with(kTemporaryPrefix)) {
            use(entry->path());
        }
        entry.increment(error);
    }
}

std::optional<struct stat> statusAt(const std::filesystem::path& path)
{
    struct stat status {};
    return lstat(path.c_str(), &status) == 0 ? std::optional(status) : std::nullopt;
}

/// Deletes the file unless another process has locked it.
void removeUnlessLocked(const std::filesystem::path& path)
{
    const auto file = openFile(path, O_RDONLY | O_NOFOLLOW);
    if (file.isOpen() &&
        uninterrupted([&] { return flock(file.number(), LOCK_EX | LOCK_NB); }) == 0) {
        unlink(path.c_str());
    }
}

}  // namespace

std::vector<Leftover> leftoversIn(const std::filesystem::path& folder)
{
    std::vector<Leftover> leftovers;
    forEachTemporary(folder, [&](const std::filesystem::path& path) {
        auto name = TemporaryName::parsed(path.filename().native());
        const auto status = statusAt(path);
        if (name && status) {
            const auto kind = kindOf(identityOf(*status), name->newFile);
            leftovers.push_back({path, std::move(*name), kind});
        }
    });
    std::sort(leftovers.begin(), leftovers.end(),
              [](const Leftover& a, const Leftover& b) { return a.path < b.path; });
    return leftovers;
}

void removeUnusedFiles(const std::filesystem::path& folder)
{
    for (const auto& leftover : leftoversIn(folder)) {
        if (leftover.kind == Leftover::Kind::Unused) {
            removeUnlessLocked(leftover.path);
        }
    }
    // Those whose names do not contain their inode yet are still empty.
    forEachTemporary(folder, [&](const std::filesystem::path& path) {
        const auto status = statusAt(path);
        if (path.filename().native().starts_with(kNewFilePrefix) && status &&
            S_ISREG(status->st_mode) && status->st_size == 0) {
            removeUnlessLocked(path);
        }
    });
}

std::vector<std::string> interruptedChangesIn(const std::filesystem::path& folder,
                                              std::string_view fileName)
{
    std::vector<std::string> sentences;
    for (const auto& [path, name, kind] : leftoversIn(folder)) {
        if (kind == Leftover::Kind::Unused || (!fileName.empty() && !name.belongsTo(fileName))) {
            continue;
        }
        const auto file = quotedText(fileName.empty() ? name.fileName : fileName);
        sentences.push_back("The last deletion was interrupted. " +
                            (kind == Leftover::Kind::Replaced
                                 ? file + " as it was before is in " + quotedPath(path) + "."
                                 : quotedPath(path) + " may hold " + file + " as it was before."));
    }
    // Looked at last: a change that ended meanwhile has deleted its files.
    return sentences.empty() || LockedFolder::isLockedElsewhere(folder) ? std::vector<std::string>()
                                                                        : sentences;
}

}  // namespace dunmora
