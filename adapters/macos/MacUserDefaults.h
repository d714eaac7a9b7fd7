#pragma once

#include "platform/UserDefaults.h"

#include <atomic>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace dunmora {

/// The preferences in the user defaults of the program's bundle, which both programs share and
/// `defaults read` shows. Only the first failure is reported.
class MacUserDefaults final : public UserDefaults {
public:
    /// `onFailure` may be empty.
    explicit MacUserDefaults(OnFailure onFailure = {}) : onFailure_(std::move(onFailure)) {}

    bool hasValue(std::string_view key) const override;
    bool boolForKey(std::string_view key) const override;
    void setBool(std::string_view key, bool value) override;
    bool synchronize() override;

private:
    bool call(const std::function<bool()>& work) const;
    void reportOnce(const std::string& message) const;

    const OnFailure onFailure_;
    mutable std::atomic<bool> failureReported_ = false;
};

}  // namespace dunmora
