#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace dunmora {

/// What the program is told about itself when it is packaged.
class Bundle {
public:
    virtual ~Bundle() = default;

    /// The text under a key of the program's information dictionary: "CFBundleVersion", or
    /// "DunmoraUpdateHost", the host of the update service with its port where that is not usual.
    /// Thread: any; does not block. Errors: none; an unknown key is missing.
    virtual std::optional<std::string> objectForInfoDictionaryKey(std::string_view key) const = 0;
};

}  // namespace dunmora
