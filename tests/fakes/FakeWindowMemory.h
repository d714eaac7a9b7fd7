#pragma once

#include "platform/WindowMemory.h"

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <string_view>

namespace dunmora::test {

/// What windows remember, in memory.
class FakeWindowMemory final : public WindowMemory {
public:
    Texts load(std::string_view window) override;
    void store(std::string_view window, const Texts& texts) override;

    /// The number of calls of `store`.
    int stores() const;

private:
    mutable std::mutex mutex_;
    std::map<std::string, Texts, std::less<>> windows_;
    int stores_ = 0;
};

}  // namespace dunmora::test
