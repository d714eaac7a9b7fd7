#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

/// By what a telephone number is recognised in another card. Two numbers are the same when they
/// share one of `texts`, or when one is international, the other is national, and they share an
/// ending.
struct PhoneKeys {
    enum class Kind { International, National };

    /// All endings of an international number that are long enough; the one of a national number.
    /// Each is one character shorter than the one before.
    std::string_view ending(std::size_t index) const
    {
        return std::string_view(longestEnding).substr(index);
    }

    std::vector<std::string> texts;
    std::string longestEnding;
    std::size_t endings = 0;
    Kind kind = Kind::National;
};

/// The keys of a number. Two numbers are the same when their digits and extensions are equal, or
/// when one begins with + or 00 and ends in the other's digits without its leading 0, if those are
/// at least seven. White space and the usual punctuation are ignored; a number with anything else
/// in it, such as letters or digits of another script, is the same only as the equal text.
///
/// Thread: any. Errors: none.
PhoneKeys phoneKeys(std::string_view number);

}  // namespace dunmora
