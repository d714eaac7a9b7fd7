#pragma once

#include "platform/WindowMemory.h"

#include <mutex>
#include <string_view>

namespace dunmora {

/// What windows remember in the user defaults of the program's bundle, which `defaults read` shows:
/// a dictionary for each window.
class MacWindowMemory final : public WindowMemory {
public:
    Texts load(std::string_view window) override;
    void store(std::string_view window, const Texts& texts) override;

private:
    // Held while a dictionary is changed.
    std::mutex mutex_;
};

}  // namespace dunmora
