#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace dunmora {

/// The information dictionary that is packaged with the program.
class Bundle {
public:
    virtual ~Bundle() = default;

    /// The value of a key: "CFBundleVersion", "CFBundleIdentifier", the program's id for the
    /// desktop in reverse DNS notation, or "DunmoraUpdateHost", the `host` or `host:port` of the
    /// update service. Empty optional for an unknown key and in a build without such a service.
    /// Thread: any; does not block. Errors: none.
    virtual std::optional<std::string> objectForInfoDictionaryKey(std::string_view key) const = 0;
};

}  // namespace dunmora
