#pragma once

#include <string>

namespace dunmora {

/// The preferences that last from run to run, and three small conveniences of the user interface.
/// Nothing is kept here: every getter asks the `UserDefaults` port and every setter stores and
/// flushes at once.
///
/// Thread: any, several at once. Errors: none; a preference that cannot be stored holds until the
/// program ends.
class Settings final {
public:
    Settings(const Settings&) = delete;
    Settings& operator=(const Settings&) = delete;

    /// The one instance, made on first use and never destroyed.
    static Settings& settings();

    /// Shows a text with the one button "OK" and returns the alert's code for it.
    static int MsgBox(const std::string& text);
    /// Starts a new message to the maker in the user's mail program.
    static void Support();
    /// Opens the maker's web site in the user's browser.
    static void Website();

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

    /// Kept for those who want to greet a new user; true unless stored otherwise.
    bool isFirstRun() const;
    void setIsFirstRun(bool firstRun);

private:
    Settings() = default;
    ~Settings() = default;
};

}  // namespace dunmora
