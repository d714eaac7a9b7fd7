#pragma once

#include <functional>
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
        calls_.push_back(prefix() + std::move(call));
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

    /// What stands before each call, such as the thread that makes it. Set it before threads run.
    std::function<std::string()> prefix = [] { return std::string(); };

private:
    mutable std::mutex mutex_;
    std::vector<std::string> calls_;
};

}  // namespace dunmora::test
