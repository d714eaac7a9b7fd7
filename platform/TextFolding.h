#pragma once

#include <string>
#include <string_view>

namespace dunmora {

/// Unicode's knowledge of letters and digits, which a search needs to ignore how a text was typed.
///
/// Thread: the main thread. Errors: none; bytes that are not UTF-8 count as U+FFFD.
class TextFolding {
public:
    virtual ~TextFolding() = default;

    /// Returns the text without the differences that a search ignores: upper and lower case, and
    /// characters that Unicode calls compatible (NFKC: composed or not, full or half width). ASCII
    /// becomes lower case and changes in no other way. UTF-8 in and out.
    virtual std::string folded(std::string_view utf8) const = 0;

    /// Returns the decimal digits in the text, those of any script, as ASCII digits.
    virtual std::string digits(std::string_view utf8) const = 0;
};

}  // namespace dunmora
