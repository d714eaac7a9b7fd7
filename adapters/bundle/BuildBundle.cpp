#include "adapters/bundle/BuildBundle.h"

namespace dunmora {

std::optional<std::string> BuildBundle::objectForInfoDictionaryKey(std::string_view key) const
{
    return key == "CFBundleVersion" ? std::optional<std::string>(DUNMORA_VERSION) : std::nullopt;
}

}  // namespace dunmora
