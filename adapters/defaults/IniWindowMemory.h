#pragma once

#include "adapters/defaults/IniFile.h"
#include "platform/WindowMemory.h"

#include <filesystem>
#include <string_view>
#include <utility>

namespace dunmora {

/// What windows remember in the file of the preferences: a section for each window.
///
/// Whether the file can be read and written is reported with the preferences, not here.
class IniWindowMemory final : public WindowMemory {
public:
    explicit IniWindowMemory(std::filesystem::path file) : file_(std::move(file)) {}

    Texts load(std::string_view window) override;
    void store(std::string_view window, const Texts& texts) override;

private:
    const IniFile file_;
};

}  // namespace dunmora
