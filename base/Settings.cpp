#include "base/Settings.h"

#include "platform/Alert.h"
#include "platform/Platform.h"
#include "platform/UserDefaults.h"
#include "platform/Workspace.h"

#include <string_view>

namespace dunmora {

namespace {

/// A preference and the value that it has until it is first stored.
struct Preference {
    std::string_view key;
    bool whenAbsent;
};

constexpr Preference kFilterFirstname{"filterFirstname", true};
constexpr Preference kFilterLastname{"filterLastname", true};
constexpr Preference kFilterNickname{"filterNickname", false};
constexpr Preference kFilterHome{"filterHome", false};
constexpr Preference kFilterWork{"filterWork", false};
constexpr Preference kFilterMobile{"filterMobile", false};
constexpr Preference kIsFirstRun{"isFirstRun", true};

bool stored(const Preference& preference)
{
    // Presence first: a Boolean read of an absent key is false, which would turn the flags that
    // are on by default off in a fresh installation.
    const UserDefaults& defaults = Platform::current().userDefaults;
    return defaults.hasValue(preference.key) ? defaults.boolForKey(preference.key)
                                             : preference.whenAbsent;
}

void store(const Preference& preference, bool value)
{
    UserDefaults& defaults = Platform::current().userDefaults;
    defaults.setBool(preference.key, value);
    defaults.synchronize();
}

}  // namespace

Settings& Settings::settings()
{
    static auto& instance = *new Settings;
    return instance;
}

int Settings::MsgBox(const std::string& text)
{
    return Platform::current().alert.runModal({text, "", "OK", std::nullopt});
}

void Settings::Support()
{
    Platform::current().workspace.openURL("mailto:" DUNMORA_SUPPORT);
}

void Settings::Website()
{
    Platform::current().workspace.openURL(DUNMORA_WEBSITE);
}

// Callers ask the one Settings object; that it keeps nothing itself is its own affair.
// NOLINTBEGIN(readability-convert-member-functions-to-static)
bool Settings::filterFirstname() const
{
    return stored(kFilterFirstname);
}

void Settings::setFilterFirstname(bool on)
{
    store(kFilterFirstname, on);
}

bool Settings::filterLastname() const
{
    return stored(kFilterLastname);
}

void Settings::setFilterLastname(bool on)
{
    store(kFilterLastname, on);
}

bool Settings::filterNickname() const
{
    return stored(kFilterNickname);
}

void Settings::setFilterNickname(bool on)
{
    store(kFilterNickname, on);
}

bool Settings::filterHome() const
{
    return stored(kFilterHome);
}

void Settings::setFilterHome(bool on)
{
    store(kFilterHome, on);
}

bool Settings::filterWork() const
{
    return stored(kFilterWork);
}

void Settings::setFilterWork(bool on)
{
    store(kFilterWork, on);
}

bool Settings::filterMobile() const
{
    return stored(kFilterMobile);
}

void Settings::setFilterMobile(bool on)
{
    store(kFilterMobile, on);
}

bool Settings::isFirstRun() const
{
    return stored(kIsFirstRun);
}

void Settings::setIsFirstRun(bool firstRun)
{
    store(kIsFirstRun, firstRun);
}
// NOLINTEND(readability-convert-member-functions-to-static)

}  // namespace dunmora
