#pragma once

#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace dunmora::test {

/// Writes down what was done, in order. Thread: any, several at once.
class CallLog final {
public:
    void add(std::string call)
    {
        const std::lock_guard guard(mutex_);
        calls_.push_back(std::move(call));
    }

    std::vector<std::string> calls() const
    {
        const std::lock_guard guard(mutex_);
        return calls_;
    }

    void clear()
    {
        const std::lock_guard guard(mutex_);
        calls_.clear();
    }

private:
    mutable std::mutex mutex_;
    std::vector<std::string> calls_;
};

}  // namespace dunmora::test
