#pragma once

#include "platform/UserDefaults.h"

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>

namespace dunmora::test {

/// Where preferences are kept when their program has ended.
struct FakeDisk {
    std::mutex mutex;
    std::map<std::string, bool, std::less<>> values;
    bool isWritable = true;
};

/// Preferences in memory; only `synchronize` exchanges them with the disk.
class FakeUserDefaults final : public UserDefaults {
public:
    FakeUserDefaults() : FakeUserDefaults(std::make_shared<FakeDisk>()) {}
    /// Those of one of several programs that share a disk.
    explicit FakeUserDefaults(std::shared_ptr<FakeDisk> disk)
        : disk_(std::move(disk)), values_(onDisk())
    {
    }

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
        unsaved_.insert_or_assign(std::string(key), value);
    }

    bool synchronize() override
    {
        const std::lock_guard guard(mutex_);
        const std::lock_guard diskGuard(disk_->mutex);
        values_ = unsaved_;
        values_.insert(disk_->values.begin(), disk_->values.end());
        if (disk_->isWritable) {
            disk_->values = values_;
            unsaved_.clear();
        }
        return unsaved_.empty();
    }

    /// What a second process would see.
    std::map<std::string, bool, std::less<>> onDisk() const
    {
        const std::lock_guard guard(disk_->mutex);
        return disk_->values;
    }

    /// How often a key's presence was asked.
    int reads() const
    {
        const std::lock_guard guard(mutex_);
        return reads_;
    }

private:
    std::shared_ptr<FakeDisk> disk_;
    mutable std::mutex mutex_;
    std::map<std::string, bool, std::less<>> values_;
    std::map<std::string, bool, std::less<>> unsaved_;
    mutable int reads_ = 0;
};

}  // namespace dunmora::test
