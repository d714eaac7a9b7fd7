#pragma once

#include "platform/UserDefaults.h"
#include "text/SharedFlags.h"

#include <string_view>

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
    const UserDefaults& below_;
    SharedFlags values_;
};

}  // namespace dunmora
