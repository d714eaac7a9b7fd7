#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace dunmora {

/// What the program is told about itself when it is packaged.
class Bundle {
public:
    virtual ~Bundle() = default;

    /// The text under a key of the program's information dictionary, such as "CFBundleVersion".
    /// Thread: any; does not block. Errors: none; an unknown key is missing.
    virtual std::optional<std::string> objectForInfoDictionaryKey(std::string_view key) const = 0;
};

}  // namespace dunmora
