#include "adapters/bundle/BuildBundle.h"

namespace dunmora {

std::optional<std::string> BuildBundle::objectForInfoDictionaryKey(std::string_view key) const
{
    if (key == "CFBundleVersion") {
        return DUNMORA_VERSION;
    }
    if (key == "DunmoraUpdateHost") {
        return DUNMORA_UPDATE_HOST;
    }
    return std::nullopt;
}

}  // namespace dunmora
