#pragma once

#include "adapters/defaults/IniDocument.h"
#include "platform/UserDefaults.h"

#include <filesystem>
#include <mutex>
#include <shared_mutex>
#include <string>
#include <string_view>

namespace dunmora {

/// The preferences in an INI file of the user's, held in memory for reading and written through at
/// every set. A set changes the lines of its own keys only, in the file as it is at that moment,
/// under a lock, so that several programs and the user can share the file.
///
/// A damaged file is kept aside as "….broken" and reads as empty, and so does one that cannot be
/// read, which stays where it is. Both are told on standard error.
class IniUserDefaults final : public UserDefaults {
public:
    /// Reads the file. It and its folder are made when the first value is set.
    explicit IniUserDefaults(std::filesystem::path file);

    /// `dunmora/dunmora.conf` in the user's folder for settings (XDG Base Directory Specification).
    static std::filesystem::path perUserFile();

    bool hasValue(std::string_view key) const override;
    bool boolForKey(std::string_view key) const override;
    void setBool(std::string_view key, bool value) override;
    bool synchronize() override;

private:
    using Values = IniDocument::Values;

    bool exchange();
    void store();
    Values stored();
    IniDocument merged();

    const std::filesystem::path file_;

    // Held while the file is read or written; guards what follows up to the next lock.
    std::mutex exchanging_;
    Values unsaved_;
    bool toldUnsaved_ = false;
    bool toldUnreadable_ = false;

    // Held for a look or a swap, never while the disk works: readers do not wait for it.
    mutable std::shared_mutex reading_;
    Values values_;
};

}  // namespace dunmora
