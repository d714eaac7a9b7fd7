#include "adapters/vcard/BookChanges.h"

#include "adapters/posix/Descriptor.h"
#include "adapters/posix/ProcessShutdown.h"
#include "platform/PlatformError.h"
#include "text/DisplayText.h"

#include <cerrno>
#include <set>
#include <system_error>
#include <utility>

namespace dunmora {

void BookChanges::add(std::unique_ptr<FileChange> change, const std::filesystem::path& name)
{
    entries_.push_back({std::move(change), name});
}

void BookChanges::commit(const std::function<void(std::size_t)>& onCommitted)
{
    for (const auto& entry : entries_) {
        entry.change->checkUnchanged();
    }
    auto failure = commitUntilFailure(onCommitted);
    if (const auto unflushed = flushFolders(); !unflushed.empty()) {
        failure = failure ? *failure + " " + unflushed +
                                " A power failure now could bring deleted people back."
                          : unflushed + " The people were deleted, but a power failure now could "
                                        "bring them back.";
    }
    if (failure) {
        throw PlatformError(*failure);
    }
}

/// Returns the message about the first change that fails, if one does.
std::optional<std::string>
BookChanges::commitUntilFailure(const std::function<void(std::size_t)>& onCommitted)
{
    // The files of a folder are one address book: an exit must not leave it half changed.
    const ShutdownInhibitor inhibitor;
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        try {
            entries_[i].change->commit();
        } catch (const PlatformError& error) {
            return describe(error.what(), i);
        }
        onCommitted(i);
    }
    return std::nullopt;
}

/// The reason and, in a book of several files, which of them have changed.
std::string BookChanges::describe(const std::string& reason, std::size_t failed) const
{
    if (entries_.size() == 1) {
        return reason;
    }
    // The failed file may have changed under some of its names; its own message lists them.
    const auto firstUnchanged = failed + (entries_[failed].change->done().empty() ? 0 : 1);
    const auto changed = namesOf(0, failed);
    const auto unchanged = namesOf(firstUnchanged, entries_.size());
    return reason + (changed.empty() ? "" : " Files changed before the error: " + changed + ".") +
           (unchanged.empty() ? "" : " Files not changed: " + unchanged + ".");
}

std::string BookChanges::namesOf(std::size_t first, std::size_t last) const
{
    std::string names;
    for (auto i = first; i < last; ++i) {
        names += (names.empty() ? "" : ", ") + displayText(entries_[i].name.filename().native());
    }
    return names;
}

/// Flushes the folders of all changed files. Returns which of them failed, and why.
std::string BookChanges::flushFolders() const
{
    std::set<std::filesystem::path> folders;
    for (const auto& entry : entries_) {
        for (const auto& path : entry.change->done()) {
            folders.insert(path.parent_path());
        }
    }
    std::string failures;
    for (const auto& folder : folders) {
        if (!syncFolder(folder)) {
            const int error = errno;
            failures += (failures.empty() ? "" : " ") + quotedPath(folder) +
                        " could not be flushed to disk: " + std::generic_category().message(error) +
                        ".";
        }
    }
    return failures;
}

}  // namespace dunmora
