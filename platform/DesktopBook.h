#pragma once

#include <cstddef>
#include <optional>
#include <string>

namespace dunmora {

/// One of the address books that the user's desktop keeps.
struct DesktopBook {
    std::string uid;
    std::string name;
    /// Where its people are kept: "local", "carddav", "google", ...
    std::string kind;
    /// Empty when the book could not be read.
    std::optional<bool> isWritable;
    std::optional<std::size_t> people;
    /// Why the book could not be read, in a sentence without its name; empty when it was.
    std::string failure;
};

}  // namespace dunmora
