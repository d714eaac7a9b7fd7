#include "tests/fakes/FakeWindowMemory.h"

namespace dunmora::test {

WindowMemory::Texts FakeWindowMemory::load(std::string_view window)
{
    const std::lock_guard guard(mutex_);
    const auto found = windows_.find(window);
    return found != windows_.end() ? found->second : Texts();
}

void FakeWindowMemory::store(std::string_view window, const Texts& texts)
{
    const std::lock_guard guard(mutex_);
    ++stores_;
    auto& stored = windows_[std::string(window)];
    for (const auto& [key, text] : texts) {
        stored.insert_or_assign(key, text);
    }
}

int FakeWindowMemory::stores() const
{
    const std::lock_guard guard(mutex_);
    return stores_;
}

}  // namespace dunmora::test
