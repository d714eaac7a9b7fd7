#pragma once

#include <string>
#include <string_view>

namespace dunmora {

class TextFolding;

/// The first letters of a name, as the user types them on the table. Case and other differences
/// that `TextFolding` removes do not count.
///
/// Thread: the main thread. Errors: none.
class NamePrefix final {
public:
    /// `folding` must outlive the prefix.
    NamePrefix(std::string_view typed, const TextFolding& folding);

    /// Whether the name, in UTF-8, begins with these letters.
    bool begins(std::string_view name) const;

private:
    const TextFolding& folding_;
    std::string folded_;
    bool isAscii_;
};

}  // namespace dunmora
