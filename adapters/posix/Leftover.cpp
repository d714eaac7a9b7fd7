#include "adapters/posix/Leftover.h"

#include "adapters/posix/Descriptor.h"
#include "adapters/posix/FileExchange.h"
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

Leftover::Kind kindOf(const std::filesystem::path& path, FileIdentity file, FileIdentity newFile)
{
    using Kind = Leftover::Kind;
    if (newFile.inode == 0) {
        return newFile.device == 0 ? Kind::Doubtful : Kind::Replaced;
    }
    if (!hasLastingInode(path.parent_path())) {
        return Kind::Doubtful;
    }
    if (file.inode != newFile.inode) {
        return Kind::Replaced;
    }
    return file.device == newFile.device ? Kind::Unused : Kind::Doubtful;
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

/// The leftovers in a folder that hold an old file, or may hold one, of these files; of all when
/// there are no names.
std::vector<Leftover> oldFilesIn(const std::filesystem::path& folder,
                                 const std::set<std::string>& fileNames)
{
    auto leftovers = leftoversIn(folder);
    std::erase_if(leftovers, [&](const Leftover& leftover) {
        const bool isWanted =
            fileNames.empty() ||
            std::any_of(fileNames.begin(), fileNames.end(), [&](const std::string& fileName) {
                return leftover.name.belongsTo(fileName);
            });
        return leftover.kind == Leftover::Kind::Unused || !isWanted;
    });
    return leftovers;
}

std::string sentenceAbout(const Leftover& leftover)
{
    const auto file = quotedText(leftover.name.fileName);
    return leftover.kind == Leftover::Kind::Replaced
               ? file + " as it was before is in " + quotedPath(leftover.path) + "."
               : quotedPath(leftover.path) + " may hold " + file +
                     " as it was before, or what another program has written to it.";
}

/// The file that a symbolic link leads to, or led to; nothing for any other file.
std::optional<std::filesystem::path> targetOf(const std::filesystem::path& path)
{
    std::error_code error;
    const auto target = std::filesystem::read_symlink(path, error);
    return error ? std::nullopt : std::optional(path.parent_path() / target);
}

}  // namespace

std::vector<Leftover> leftoversIn(const std::filesystem::path& folder)
{
    std::vector<Leftover> leftovers;
    forEachTemporary(folder, [&](const std::filesystem::path& path) {
        auto name = TemporaryName::parsed(path.filename().native());
        const auto status = statusAt(path);
        if (name && status) {
            const auto kind = kindOf(path, identityOf(*status), name->newFile);
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
                                              const std::set<std::string>& fileNames)
{
    constexpr std::size_t kMostSentences = 20;
    std::vector<std::string> sentences;
    std::size_t more = 0;
    const auto report = [&](const Leftover& leftover) {
        if (sentences.size() < kMostSentences) {
            sentences.push_back("The last change was interrupted. " + sentenceAbout(leftover));
        } else {
            ++more;
        }
    };
    for (const auto& leftover : oldFilesIn(folder, fileNames)) {
        report(leftover);
        // A removed link is not in the book any more, so nothing else leads to the file behind it.
        if (const auto target = targetOf(leftover.path)) {
            for (const auto& behind :
                 oldFilesIn(target->parent_path(), {target->filename().string()})) {
                if (!targetOf(behind.path)) {
                    report(behind);
                }
            }
        }
    }
    if (more > 0) {
        sentences.push_back(std::to_string(more) + " more such files are in " + quotedPath(folder) +
                            ". Their names begin with “" + std::string(kTemporaryPrefix) + "”.");
    }
    // Looked at last: a change that ended meanwhile has deleted its files.
    return sentences.empty() || LockedFolder::isLockedElsewhere(folder) ? std::vector<std::string>()
                                                                        : sentences;
}

}  // namespace dunmora
