#include "tests/fakes/FakeUserDefaults.h"

#include <utility>

namespace dunmora::test {

FakeUserDefaults::FakeUserDefaults() : FakeUserDefaults(std::make_shared<FakeDisk>()) {}

FakeUserDefaults::FakeUserDefaults(std::shared_ptr<FakeDisk> disk)
    : disk_(std::move(disk)), values_(onDisk())
{
}

bool FakeUserDefaults::hasValue(std::string_view key) const
{
    const std::lock_guard guard(mutex_);
    ++reads_;
    return values_.contains(key);
}

bool FakeUserDefaults::boolForKey(std::string_view key) const
{
    const std::lock_guard guard(mutex_);
    const auto found = values_.find(key);
    return found != values_.end() && found->second;
}

void FakeUserDefaults::setBool(std::string_view key, bool value)
{
    const std::lock_guard guard(mutex_);
    values_.insert_or_assign(std::string(key), value);
    unsaved_.insert_or_assign(std::string(key), value);
}

bool FakeUserDefaults::synchronize()
{
    const std::lock_guard guard(mutex_);
    const std::lock_guard diskGuard(disk_->mutex);
    values_ = unsaved_;
    values_.insert(disk_->values.begin(), disk_->values.end());
    if (disk_->isWritable) {
        changes_ += disk_->values != values_ ? 1 : 0;
        disk_->values = values_;
        unsaved_.clear();
    }
    return unsaved_.empty();
}

std::map<std::string, bool, std::less<>> FakeUserDefaults::onDisk() const
{
    const std::lock_guard guard(disk_->mutex);
    return disk_->values;
}

int FakeUserDefaults::reads() const
{
    const std::lock_guard guard(mutex_);
    return reads_;
}

int FakeUserDefaults::changes() const
{
    const std::lock_guard guard(mutex_);
    return changes_;
}

}  // namespace dunmora::test
