#include "adapters/bundle/BuildBundle.h"

#include <utility>

namespace dunmora {

namespace {

std::optional<std::string> unlessEmpty(std::string value)
{
    return value.empty() ? std::nullopt : std::optional(std::move(value));
}

}  // namespace

std::optional<std::string> BuildBundle::objectForInfoDictionaryKey(std::string_view key) const
{
    if (key == "CFBundleVersion") {
        return DUNMORA_VERSION;
    }
    if (key == "CFBundleIdentifier") {
        return DUNMORA_APP_ID;
    }
    if (key == "DunmoraUpdateHost") {
        return unlessEmpty(DUNMORA_UPDATE_HOST);
    }
    return std::nullopt;
}

}  // namespace dunmora
