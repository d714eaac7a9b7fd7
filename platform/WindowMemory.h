#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

namespace dunmora {

/// What windows remember between runs, such as their size: short texts by key, for each window by
/// its name. They are stored beside the preferences but are not preferences: without them, every
/// window looks as it did at the first start.
///
/// Names and keys consist of ASCII letters, digits, `_`, `-` and `.`, texts of ASCII letters,
/// digits, blanks and `_-.,:+`. Nothing of an address book may be among them.
///
/// Thread: any, several at once. Errors: none; what cannot be read or stored is not remembered.
class WindowMemory {
public:
    using Texts = std::map<std::string, std::string, std::less<>>;

    virtual ~WindowMemory() = default;

    /// Returns the stored texts of this window. The user and other programs can change them, so
    /// they may contain anything. Blocks on the disk.
    virtual Texts load(std::string_view window) = 0;

    /// Stores these texts of this window as one change, where the system can; every other text and
    /// preference is kept. Blocks on the disk.
    virtual void store(std::string_view window, const Texts& texts) = 0;
};

}  // namespace dunmora
