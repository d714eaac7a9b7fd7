#pragma once

#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace dunmora::test {

/// Records calls in order. Thread: any, several at once.
class CallLog final {
public:
    void add(const std::string& call);
    std::vector<std::string> calls() const;
    void clear();

    /// Returns what to put before each call, such as the name of the calling thread. Set it before
    /// threads run.
    std::function<std::string()> prefix = [] { return std::string(); };

private:
    mutable std::mutex mutex_;
    std::vector<std::string> calls_;
};

}  // namespace dunmora::test
