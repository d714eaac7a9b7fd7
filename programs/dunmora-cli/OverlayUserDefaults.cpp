#include "programs/dunmora-cli/OverlayUserDefaults.h"

namespace dunmora {

bool OverlayUserDefaults::hasValue(std::string_view key) const
{
    return values_.find(key) != nullptr || below_.hasValue(key);
}

bool OverlayUserDefaults::boolForKey(std::string_view key) const
{
    const auto* const value = values_.find(key);
    return value != nullptr ? *value : below_.boolForKey(key);
}

void OverlayUserDefaults::setBool(std::string_view key, bool value)
{
    values_.set(key, value);
}

}  // namespace dunmora
