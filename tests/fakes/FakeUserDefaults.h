#pragma once

#include "platform/UserDefaults.h"

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>

namespace dunmora::test {

/// The disk that keeps preferences between runs of a program.
struct FakeDisk {
    std::mutex mutex;
    std::map<std::string, bool, std::less<>> values;
    bool isWritable = true;
};

/// Preferences in memory; only `synchronize` exchanges them with the disk.
class FakeUserDefaults final : public UserDefaults {
public:
    FakeUserDefaults();
    /// The preferences of one of several programs that share a disk.
    explicit FakeUserDefaults(std::shared_ptr<FakeDisk> disk);

    bool hasValue(std::string_view key) const override;
    bool boolForKey(std::string_view key) const override;
    void setBool(std::string_view key, bool value) override;
    bool synchronize() override;

    /// What a second process would see.
    std::map<std::string, bool, std::less<>> onDisk() const;

    /// The number of calls of `hasValue`.
    int reads() const;
    /// How often `synchronize` has changed the disk.
    int changes() const;

private:
    std::shared_ptr<FakeDisk> disk_;
    mutable std::mutex mutex_;
    std::map<std::string, bool, std::less<>> values_;
    std::map<std::string, bool, std::less<>> unsaved_;
    mutable int reads_ = 0;
    int changes_ = 0;
};

}  // namespace dunmora::test
