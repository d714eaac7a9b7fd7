#include "adapters/defaults/IniUserDefaults.h"

#include "platform/PlatformError.h"

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
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

}  // namespace

IniUserDefaults::IniUserDefaults(std::filesystem::path file, OnFailure onFailure,
                                 std::chrono::milliseconds lockTimeout)
    : file_(std::move(file), lockTimeout), onFailure_(std::move(onFailure))
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
        Values values = file_.load().values();
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

void IniUserDefaults::save()
{
    if (unsaved_.empty()) {
        return;
    }
    file_.change([this](IniDocument& document) {
        bool hasChanged = false;
        for (const auto& [key, value] : unsaved_) {
            hasChanged = document.set(key, value) || hasChanged;
        }
        return hasChanged;
    });
    unsaved_.clear();
}

}  // namespace dunmora
