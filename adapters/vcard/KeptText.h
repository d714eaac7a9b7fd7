#pragma once

#include <cstring>
#include <memory_resource>
#include <string_view>

namespace dunmora {

/// Copies the text into the memory. The result is valid as long as the memory; it is never null.
/// Thread: as the memory. Errors: std::bad_alloc.
inline std::string_view keepText(std::string_view text, std::pmr::memory_resource& memory)
{
    if (text.empty()) {
        return "";
    }
    auto* place = static_cast<char*>(memory.allocate(text.size(), 1));
    std::memcpy(place, text.data(), text.size());
    return {place, text.size()};
}

}  // namespace dunmora
