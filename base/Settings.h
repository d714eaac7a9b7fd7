#pragma once

#include "base/ContactFields.h"

#include <string>

namespace dunmora {

/// The preferences that last from run to run, and three small conveniences of the user interface.
/// Caches nothing: every getter reads the `UserDefaults` port, and every setter stores and flushes
/// at once.
///
/// Thread: any, several at once. Errors: none; a preference that cannot be stored lasts until the
/// program exits.
class Settings final {
public:
    Settings(const Settings&) = delete;
    Settings& operator=(const Settings&) = delete;

    /// The one instance, created on first use and never destroyed.
    static Settings& settings();

    /// Shows a text with the one button "OK" and returns the alert's code for it.
    static int MsgBox(const std::string& text);
    /// Starts a new message to the support address in the user's mail program.
    static void Support();
    /// Opens the program's web site in the user's browser.
    static void Website();

    /// Whether a field is part of the match key: the stored flag, or else its default.
    bool isOn(const MatchPreference& preference) const;
    void setOn(const MatchPreference& preference, bool on);
    /// Stores the flags of all match fields as one change. Returns whether that succeeded.
    bool setMatchFields(const MatchFieldChoice& choice);

    // The same for each field by name.

    /// Whether the first name is part of the match key; true unless stored otherwise.
    bool filterFirstname() const;
    void setFilterFirstname(bool on);
    /// Whether the last name is part of the match key; true unless stored otherwise.
    bool filterLastname() const;
    void setFilterLastname(bool on);
    /// Whether the nickname is part of the match key; false unless stored otherwise.
    bool filterNickname() const;
    void setFilterNickname(bool on);
    /// Whether the home phone number is part of the match key; false unless stored otherwise.
    bool filterHome() const;
    void setFilterHome(bool on);
    /// Whether the work phone number is part of the match key; false unless stored otherwise.
    bool filterWork() const;
    void setFilterWork(bool on);
    /// Whether the mobile phone number is part of the match key; false unless stored otherwise.
    bool filterMobile() const;
    void setFilterMobile(bool on);

    /// Whether the program has not run before. Stored but not used; true unless stored otherwise.
    bool isFirstRun() const;
    void setIsFirstRun(bool firstRun);

private:
    Settings() = default;
    ~Settings() = default;
};

}  // namespace dunmora
