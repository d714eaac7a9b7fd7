#include "base/Settings.h"

#include "platform/Alert.h"
#include "platform/Platform.h"
#include "platform/UserDefaults.h"
#include "platform/Workspace.h"

#include <string_view>

namespace dunmora {

namespace {

constexpr std::string_view kIsFirstRun = "isFirstRun";

bool stored(std::string_view key, bool whenAbsent)
{
    // Presence first: a Boolean read of an absent key is false, which would turn the flags that
    // are on by default off in a fresh installation.
    const UserDefaults& defaults = Platform::current().userDefaults;
    return defaults.hasValue(key) ? defaults.boolForKey(key) : whenAbsent;
}

void store(std::string_view key, bool value)
{
    UserDefaults& defaults = Platform::current().userDefaults;
    defaults.setBool(key, value);
    defaults.synchronize();
}

/// The match preference of a contact field; the compiler rejects a field without one.
constexpr MatchPreference matchPreference(std::string_view contactKey)
{
    return contactField(contactKey).match.value();
}

constexpr auto kFirstname = matchPreference(kContactFirstName);
constexpr auto kLastname = matchPreference(kContactLastName);
constexpr auto kNickname = matchPreference(kContactNickname);
constexpr auto kHome = matchPreference(kContactHome);
constexpr auto kWork = matchPreference(kContactWork);
constexpr auto kMobile = matchPreference(kContactMobile);

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

// Callers go through the one Settings object, although it keeps nothing itself.
// NOLINTBEGIN(readability-convert-member-functions-to-static)
bool Settings::isOn(const MatchPreference& preference) const
{
    return stored(preference.key, preference.isOnByDefault);
}

void Settings::setOn(const MatchPreference& preference, bool on)
{
    store(preference.key, on);
}

bool Settings::setMatchFields(const MatchFieldChoice& choice)
{
    UserDefaults& defaults = Platform::current().userDefaults;
    for (const auto* const field : kMatchFields) {
        defaults.setBool(field->match->key, choice.test(field->match->place));
    }
    return defaults.synchronize();
}

bool Settings::filterFirstname() const
{
    return isOn(kFirstname);
}

void Settings::setFilterFirstname(bool on)
{
    setOn(kFirstname, on);
}

bool Settings::filterLastname() const
{
    return isOn(kLastname);
}

void Settings::setFilterLastname(bool on)
{
    setOn(kLastname, on);
}

bool Settings::filterNickname() const
{
    return isOn(kNickname);
}

void Settings::setFilterNickname(bool on)
{
    setOn(kNickname, on);
}

bool Settings::filterHome() const
{
    return isOn(kHome);
}

void Settings::setFilterHome(bool on)
{
    setOn(kHome, on);
}

bool Settings::filterWork() const
{
    return isOn(kWork);
}

void Settings::setFilterWork(bool on)
{
    setOn(kWork, on);
}

bool Settings::filterMobile() const
{
    return isOn(kMobile);
}

void Settings::setFilterMobile(bool on)
{
    setOn(kMobile, on);
}

bool Settings::isFirstRun() const
{
    return stored(kIsFirstRun, true);
}

void Settings::setIsFirstRun(bool firstRun)
{
    store(kIsFirstRun, firstRun);
}
// NOLINTEND(readability-convert-member-functions-to-static)

}  // namespace dunmora
