#pragma once

#include "text/Ascii.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace dunmora {

/// A property's name of at most eight characters as a number, so that one comparison recognizes it
/// in any case. Names that differ in more than the case of letters have different keys.
///
/// Thread: any. Errors: none.
class NameKey final {
public:
    static constexpr std::size_t kLongest = 8;

    constexpr NameKey() = default;

    /// The key of a name; 0 when it is longer or has other characters than the standard allows
    /// (RFC 6350 §3.3: letters, digits and hyphens).
    static constexpr std::uint64_t of(std::string_view name)
    {
        NameKey key;
        for (const char c : name) {
            if (!key.append(c)) {
                return 0;
            }
        }
        return name.size() <= kLongest ? key.value() : 0;
    }

    /// Appends the next character of the name. Returns whether the standard allows it; if not, the
    /// key stays as it is.
    constexpr bool append(char c)
    {
        const auto folded = kFolded[static_cast<unsigned char>(c)];
        if (folded == 0) {
            return false;
        }
        value_ = value_ << 8U | folded;
        return true;
    }

    /// The key, as long as no more than `kLongest` characters were appended.
    constexpr std::uint64_t value() const { return value_; }

private:
    /// Each character that a name may have, in upper case; 0 for all others. No such character is
    /// 0, so names of different lengths have different keys.
    static constexpr std::array<std::uint8_t, 256> kFolded = [] {
        std::array<std::uint8_t, 256> folded{};
        for (unsigned code = 0; code < 128; ++code) {
            const char c = toUpperAscii(static_cast<char>(code));
            if ((c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '-') {
                folded[code] = static_cast<std::uint8_t>(c);
            }
        }
        return folded;
    }();

    std::uint64_t value_ = 0;
};

}  // namespace dunmora
