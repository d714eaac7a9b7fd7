#pragma once

#include "platform/UserDefaults.h"

#include <functional>
#include <mutex>
#include <string_view>

namespace dunmora {

/// The preferences in the user defaults of the program's bundle, which both programs share and
/// `defaults read` shows.
class MacUserDefaults final : public UserDefaults {
public:
    bool hasValue(std::string_view key) const override;
    bool boolForKey(std::string_view key) const override;
    void setBool(std::string_view key, bool value) override;
    bool synchronize() override;

private:
    bool call(const std::function<bool()>& work) const;

    mutable std::once_flag errorReported_;
};

}  // namespace dunmora
