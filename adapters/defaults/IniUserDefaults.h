#pragma once

#include "adapters/defaults/IniFile.h"
#include "platform/UserDefaults.h"
#include "text/SharedFlags.h"

#include <chrono>
#include <filesystem>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

/// Preferences in an INI file, cached in memory. `synchronize` changes only the lines of the keys
/// that were set, so that several programs and the user can share the file (see `IniFile`).
///
/// The first failure to read the file and the first failure to save are reported.
class IniUserDefaults final : public UserDefaults {
public:
    /// Reads the file. When it is missing, the first `synchronize` with a value to store creates
    /// it, with its folders. A save fails when another program keeps the file locked for this long.
    /// `onFailure` may be empty; the constructor may call it already.
    explicit IniUserDefaults(std::filesystem::path file, OnFailure onFailure = {},
                             std::chrono::milliseconds lockTimeout = std::chrono::seconds(1));

    /// `dunmora/dunmora.conf` in the user's configuration folder (XDG base directory standard).
    static std::filesystem::path perUserFile();

    bool hasValue(std::string_view key) const override;
    bool boolForKey(std::string_view key) const override;
    void setBool(std::string_view key, bool value) override;
    bool synchronize() override;

private:
    using Values = IniDocument::Values;

    /// Appends the failures that have not been reported yet.
    bool saveAndReload(std::vector<std::string>& failures);
    void save();

    const IniFile file_;
    const OnFailure onFailure_;

    // Held while the file is read or written; guards all members but the last.
    std::mutex fileMutex_;
    Values unsaved_;
    bool saveFailureReported_ = false;
    bool loadFailureReported_ = false;

    // The stored values and, in their place, the unsaved ones. Changed under the mutex, read
    // without it.
    SharedFlags values_;
};

}  // namespace dunmora
