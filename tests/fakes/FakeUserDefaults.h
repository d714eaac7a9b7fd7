#pragma once

#include "platform/UserDefaults.h"

#include <map>
#include <mutex>
#include <string>

namespace dunmora::test {

/// Preferences in memory; "the disk" is a second map that only `synchronize` writes.
class FakeUserDefaults final : public UserDefaults {
public:
    bool hasValue(std::string_view key) const override
    {
        const std::lock_guard guard(mutex_);
        ++reads_;
        return values_.contains(key);
    }

    bool boolForKey(std::string_view key) const override
    {
        const std::lock_guard guard(mutex_);
        const auto found = values_.find(key);
        return found != values_.end() && found->second;
    }

    void setBool(std::string_view key, bool value) override
    {
        const std::lock_guard guard(mutex_);
        values_.insert_or_assign(std::string(key), value);
    }

    bool synchronize() override
    {
        const std::lock_guard guard(mutex_);
        onDisk_ = values_;
        return true;
    }

    /// What a second process would see.
    std::map<std::string, bool, std::less<>> onDisk() const
    {
        const std::lock_guard guard(mutex_);
        return onDisk_;
    }

    /// How often a key's presence was asked.
    int reads() const
    {
        const std::lock_guard guard(mutex_);
        return reads_;
    }

private:
    mutable std::mutex mutex_;
    std::map<std::string, bool, std::less<>> values_;
    std::map<std::string, bool, std::less<>> onDisk_;
    mutable int reads_ = 0;
};

}  // namespace dunmora::test
