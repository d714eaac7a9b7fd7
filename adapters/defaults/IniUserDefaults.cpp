#include "adapters/defaults/IniUserDefaults.h"

#include "adapters/defaults/LockedFile.h"
#include "platform/PlatformError.h"

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace dunmora {

namespace {

void tell(const std::string& sentence)
{
    // One write, so that the lines of several threads and programs stay whole.
    std::fputs(("dunmora: " + sentence + "\n").c_str(), stderr);
}

void tellOnce(bool& told, const std::string& sentence)
{
    if (!std::exchange(told, true)) {
        tell(sentence);
    }
}

/// The path between quotation marks. Its control characters must not reach a terminal.
std::string quoted(const std::filesystem::path& file)
{
    std::string text = "“";
    for (const char c : file.string()) {
        if (static_cast<unsigned char>(c) < ' ' || c == '\x7F') {
            text += "\uFFFD";
        } else {
            text += c;
        }
    }
    return text + "”";
}

std::filesystem::path fromEnvironment(const char* name)
{
    // NOLINTNEXTLINE(concurrency-mt-unsafe): nothing of ours changes the environment
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

IniUserDefaults::IniUserDefaults(std::filesystem::path file) : file_(std::move(file))
{
    exchange();
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
    const std::shared_lock guard(reading_);
    return values_.contains(key);
}

bool IniUserDefaults::boolForKey(std::string_view key) const
{
    const std::shared_lock guard(reading_);
    const auto found = values_.find(key);
    return found != values_.end() && found->second;
}

void IniUserDefaults::setBool(std::string_view key, bool value)
{
    const std::lock_guard guard(exchanging_);
    unsaved_.insert_or_assign(std::string(key), value);
    exchange();
}

bool IniUserDefaults::synchronize()
{
    const std::lock_guard guard(exchanging_);
    return exchange();
}

bool IniUserDefaults::exchange()
{
    try {
        store();
    } catch (const PlatformError& error) {
        tellOnce(toldUnsaved_, "The preferences could not be saved in " + quoted(file_) + ": " +
                                   error.what() + ". They hold until the program ends.");
    }
    Values values = values_;
    try {
        values = stored();
    } catch (const PlatformError& error) {
        tellOnce(toldUnreadable_, "The preferences could not be read from " + quoted(file_) + ": " +
                                      error.what() + ".");
    }
    for (const auto& [key, value] : unsaved_) {
        values.insert_or_assign(key, value);
    }
    {
        const std::lock_guard guard(reading_);
        values_.swap(values);
    }
    return unsaved_.empty();
}

void IniUserDefaults::store()
{
    if (!unsaved_.empty()) {
        merged();
        unsaved_.clear();
    }
}

IniUserDefaults::Values IniUserDefaults::stored()
{
    // No lock is needed to read: the file is replaced as a whole, never changed in place.
    const auto document = IniDocument::parsed(contentOf(file_));
    if (document) {
        return document->values();
    }
    try {
        return merged().values();
    } catch (const PlatformError& error) {
        throw PlatformError("The file is damaged and could not be kept aside (" +
                            std::string(error.what()) + ")");
    }
}

/// Brings what is unsaved into the file as it is now and returns the result.
IniDocument IniUserDefaults::merged()
{
    for (;;) {
        const LockedFile file(file_);
        auto document = IniDocument::parsed(file.read());
        if (!document) {
            // With its name the file gives up the lock, too: begin again.
            const auto aside = file.moveAside(".broken");
            tell("The preferences in " + quoted(file_) + " are damaged and were kept as " +
                 quoted(aside) + ". The defaults apply.");
            continue;
        }
        bool changed = false;
        for (const auto& [key, value] : unsaved_) {
            changed = document->set(key, value) || changed;
        }
        if (changed) {
            file.replace(document->text());
        }
        return *document;
    }
}

}  // namespace dunmora
