#pragma once

#include "platform/UserDefaults.h"

#include <mutex>
#include <string>
#include <vector>

namespace dunmora {

/// The user's preferences, overridden by values for this run. A value that is set stays in the
/// overlay and is never stored.
class OverlayUserDefaults final : public UserDefaults {
public:
    /// `below` must outlive the overlay.
    explicit OverlayUserDefaults(const UserDefaults& below) : below_(below) {}

    bool hasValue(std::string_view key) const override;
    bool boolForKey(std::string_view key) const override;
    void setBool(std::string_view key, bool value) override;
    bool synchronize() override { return true; }

private:
    struct Entry {
        std::string key;
        bool value;
    };

    /// The overlay's entry under the key; null if there is none. The caller holds the mutex.
    const Entry* find(std::string_view key) const;

    const UserDefaults& below_;
    mutable std::mutex mutex_;
    // A handful of keys that are read for every contact: faster than any map.
    std::vector<Entry> entries_;
};

}  // namespace dunmora
