#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace dunmora {

/// The characters that the user's terminal can show.
/// Thread: one at a time. Errors: none.
class Charset final {
public:
    /// UTF-8, which has all characters.
    Charset() = default;

    /// `name` as in the user's locale, such as "UTF-8" or "ISO-8859-1". An unknown one has the
    /// characters of ASCII only.
    explicit Charset(const std::string& name);

    /// The UTF-8 text in this charset. Quotation marks that it does not have become plain ones, the
    /// ellipsis of a cut a tilde, and any other character a "?" for each column it takes, or one
    /// when it takes none.
    std::string encoded(std::string_view text) const;

private:
    class Conversion;

    void appendEncoded(std::string& out, std::string_view character) const;

    bool isUtf8_ = true;
    // Null for ASCII.
    std::shared_ptr<Conversion> conversion_;
};

}  // namespace dunmora
