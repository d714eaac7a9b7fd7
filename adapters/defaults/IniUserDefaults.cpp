#include "adapters/defaults/IniUserDefaults.h"

#include "adapters/posix/FileChanges.h"
#include "adapters/posix/FileComparison.h"
#include "adapters/posix/FileContent.h"
#include "adapters/posix/FileReplacement.h"
#include "adapters/posix/LockedFolder.h"
#include "platform/PlatformError.h"
#include "text/DisplayText.h"

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <system_error>
#include <utility>

namespace dunmora {

namespace {

void addOnce(std::vector<std::string>& failures, bool& added, const std::string& message)
{
    if (!std::exchange(added, true)) {
        failures.push_back(message);
    }
}

std::filesystem::path fromEnvironment(const char* name)
{
    // NOLINTNEXTLINE(concurrency-mt-unsafe): the programs never change the environment
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

std::filesystem::path homeFolder()
{
    if (auto home = fromEnvironment("HOME"); home.is_absolute()) {
        return home;
    }
    passwd entry{};
    passwd* found = nullptr;
    std::array<char, 16384> texts{};
    ::getpwuid_r(::getuid(), &entry, texts.data(), texts.size(), &found);
    return found != nullptr ? found->pw_dir : "/";
}

/// The parsed content of the file. Errors: PlatformError when it is not an INI file.
IniDocument parse(const FileBytes& bytes, const std::filesystem::path& file)
{
    auto document = IniDocument::parsed(bytes.view());
    if (!document) {
        throw PlatformError(quotedPath(file) +
                            " is not a valid preferences file. Correct it or delete it.");
    }
    return *document;
}

}  // namespace

IniUserDefaults::IniUserDefaults(std::filesystem::path file, OnFailure onFailure,
                                 std::chrono::milliseconds lockTimeout)
    : file_(std::move(file)), onFailure_(std::move(onFailure)), lockTimeout_(lockTimeout)
{
    IniUserDefaults::synchronize();
}

std::filesystem::path IniUserDefaults::perUserFile()
{
    auto folder = fromEnvironment("XDG_CONFIG_HOME");
    if (!folder.is_absolute()) {
        folder = homeFolder() / ".config";
    }
    return folder / "dunmora" / "dunmora.conf";
}

bool IniUserDefaults::hasValue(std::string_view key) const
{
    return values_.find(key) != nullptr;
}

bool IniUserDefaults::boolForKey(std::string_view key) const
{
    const auto* const value = values_.find(key);
    return value != nullptr && *value;
}

void IniUserDefaults::setBool(std::string_view key, bool value)
{
    const std::lock_guard guard(fileMutex_);
    unsaved_.insert_or_assign(std::string(key), value);
    values_.set(key, value);
}

bool IniUserDefaults::synchronize()
{
    std::vector<std::string> failures;
    const bool isStored = saveAndReload(failures);
    for (const auto& failure : failures) {
        // A single write keeps the lines of several threads and programs whole.
        std::fputs(("dunmora: " + failure + "\n").c_str(), stderr);
        if (onFailure_) {
            onFailure_(failure);
        }
    }
    return isStored;
}

bool IniUserDefaults::saveAndReload(std::vector<std::string>& failures)
{
    const std::lock_guard guard(fileMutex_);
    try {
        save();
    } catch (const PlatformError& error) {
        addOnce(failures, saveFailureReported_,
                "The preferences were not saved and last until the program ends. " +
                    std::string(error.what()));
    }
    try {
        Values values = load();
        for (const auto& [key, value] : unsaved_) {
            values.insert_or_assign(key, value);
        }
        values_.replace(values);
    } catch (const PlatformError& error) {
        addOnce(failures, loadFailureReported_,
                "The preferences were not loaded. " + std::string(error.what()));
    }
    return unsaved_.empty();
}

/// Writes the unsaved values to the file, again if another program changes it meanwhile.
void IniUserDefaults::save()
{
    constexpr int kMaxAttempts = 3;
    const auto tryAgain = LockedFile::tryAgainFor(lockTimeout_);
    for (int attempts = 1; !unsaved_.empty(); ++attempts) {
        try {
            saveInto(LockedFile::openOrCreate(file_, tryAgain), tryAgain);
        } catch (const FileHasChanged&) {
            if (attempts == kMaxAttempts) {
                throw PlatformError(quotedPath(file_) +
                                    " is being changed by another program. Try again later.");
            }
        }
    }
}

/// Writes the unsaved values to the file as it is now.
void IniUserDefaults::saveInto(LockedFile file, const LockedFile::TryAgain& tryAgain)
{
    const auto content = file.content();
    file.expectContent({content.view()});
    auto document = parse(content, file_);
    bool hasChanged = false;
    for (const auto& [key, value] : unsaved_) {
        hasChanged = document.set(key, value) || hasChanged;
    }
    if (hasChanged) {
        const auto text = document.text();
        LockedFolders folders;
        folders.lock(file.targets().front().parent_path(), tryAgain);
        FileChanges changes;
        changes.add(std::make_unique<FileReplacement>(std::move(file), Pieces{text}), file_);
        changes.commit([](std::size_t /*index*/) {});
    }
    unsaved_.clear();
}

IniUserDefaults::Values IniUserDefaults::load() const
{
    std::error_code error;
    if (std::filesystem::status(file_, error).type() == std::filesystem::file_type::not_found) {
        return {};
    }
    // Reading needs no lock: the file is replaced as a whole.
    return parse(readFile(file_).bytes, file_).values();
}

}  // namespace dunmora
