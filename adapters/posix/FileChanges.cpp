#include "adapters/posix/FileChanges.h"

#include "adapters/posix/Descriptor.h"
#include "adapters/posix/FileError.h"
#include "adapters/posix/ProcessShutdown.h"
#include "platform/PlatformError.h"
#include "text/DisplayText.h"

#include <algorithm>
#include <cerrno>
#include <exception>
#include <set>
#include <system_error>
#include <utility>

namespace dunmora {

namespace {

/// The names as one text, which stays readable with thousands of them.
std::string listed(const std::vector<std::string>& names)
{
    constexpr std::size_t kMostNames = 20;
    std::string text;
    for (std::size_t i = 0; i < std::min(names.size(), kMostNames); ++i) {
        text += (text.empty() ? "" : ", ") + names[i];
    }
    if (names.size() > kMostNames) {
        text += " and " + std::to_string(names.size() - kMostNames) + " more";
    }
    return text;
}

std::string reasonOf(const std::exception_ptr& failure)
{
    try {
        std::rethrow_exception(failure);
    } catch (const PlatformError& error) {
        return error.what();
    } catch (...) {
        return "The change failed.";
    }
}

}  // namespace

void FileChanges::add(std::unique_ptr<FileChange> change, const std::filesystem::path& name)
{
    entries_.push_back({std::move(change), name});
}

void FileChanges::commit(const std::function<void(std::size_t)>& onCommitted)
{
    for (const auto& entry : entries_) {
        entry.change->checkUnchanged();
    }
    // The files are one address book: an exit must not leave it half changed.
    const ShutdownInhibitor inhibitor;
    std::exception_ptr failure;
    std::string remains;
    try {
        applyAndCheck();
    } catch (...) {
        failure = std::current_exception();
        remains = revert();
    }
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        if (!entries_[i].change->changedPaths().empty()) {
            onCommitted(i);
        }
    }
    if (failure && remains.empty()) {
        std::rethrow_exception(failure);
    }
    auto message = failure ? reasonOf(failure) : std::string();
    appendSentences(message, failure ? remains : finish());
    if (!message.empty()) {
        throw PlatformError(message);
    }
}

void FileChanges::applyAndCheck()
{
    while (applied_ < entries_.size()) {
        // Counted first: a change that fails may have been made under some of the file's names.
        auto& change = *entries_[applied_++].change;
        change.apply();
        ShutdownInhibitor::reportProgress();
    }
    for (const auto& entry : entries_) {
        entry.change->checkOldFile();
        ShutdownInhibitor::reportProgress();
    }
    if (const auto unflushed = flushFolders(); !unflushed.empty()) {
        throw PlatformError(unflushed);
    }
    for (const auto& entry : entries_) {
        entry.change->checkOldFileAgain();
        ShutdownInhibitor::reportProgress();
    }
}

/// Deletes the old files. Returns what went wrong.
std::string FileChanges::finish()
{
    std::string failures;
    for (const auto& entry : entries_) {
        appendSentences(failures, entry.change->finish());
        ShutdownInhibitor::reportProgress();
    }
    if (const auto unflushed = flushFolders(); !unflushed.empty()) {
        appendSentences(failures, unflushed);
        appendSentences(failures,
                        "A power failure now could bring back the old file, which is hidden.");
    }
    return failures;
}

/// Reverts what has been applied, the last change first. Returns what could not be reverted.
std::string FileChanges::revert()
{
    std::string failures;
    while (applied_ > 0) {
        const auto& [change, name] = entries_[--applied_];
        try {
            appendSentences(failures, change->revert());
        } catch (const std::exception&) {
            // Without enough memory the others must be reverted all the same.
            appendSentences(failures, quotedPath(name) + " could not be restored.");
        }
        ShutdownInhibitor::reportProgress();
    }
    appendSentences(failures, listChanged());
    // When this fails, a power failure can only bring back temporary files, which the next reading
    // reports.
    flushFolders();
    return failures;
}

/// In a book of several files, which of them have changed despite a failure.
std::string FileChanges::listChanged() const
{
    std::vector<std::string> changed;
    std::vector<std::string> unchanged;
    for (const auto& [change, name] : entries_) {
        auto& names = change->changedPaths().empty() ? unchanged : changed;
        names.push_back(displayText(name.filename().native()));
    }
    if (entries_.size() == 1 || changed.empty()) {
        return {};
    }
    return "Files changed despite the error: " + listed(changed) + "." +
           (unchanged.empty() ? "" : " Files not changed: " + listed(unchanged) + ".");
}

/// Flushes the folders of all files. Returns which of them failed, and why.
std::string FileChanges::flushFolders() const
{
    std::set<std::filesystem::path> folders;
    for (const auto& entry : entries_) {
        for (auto& folder : entry.change->folders()) {
            folders.insert(std::move(folder));
        }
    }
    std::string failures;
    for (const auto& folder : folders) {
        if (!syncFolder(folder)) {
            const int error = errno;
            appendSentences(failures, quotedPath(folder) + " could not be flushed to disk: " +
                                          std::generic_category().message(error) + ".");
        }
        ShutdownInhibitor::reportProgress();
    }
    return failures;
}

}  // namespace dunmora
