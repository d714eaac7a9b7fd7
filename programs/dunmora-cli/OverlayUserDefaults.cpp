#include "programs/dunmora-cli/OverlayUserDefaults.h"

#include <algorithm>

namespace dunmora {

bool OverlayUserDefaults::hasValue(std::string_view key) const
{
    const std::lock_guard guard(mutex_);
    return find(key) != nullptr || below_.hasValue(key);
}

bool OverlayUserDefaults::boolForKey(std::string_view key) const
{
    const std::lock_guard guard(mutex_);
    const auto* const entry = find(key);
    return entry != nullptr ? entry->value : below_.boolForKey(key);
}

void OverlayUserDefaults::setBool(std::string_view key, bool value)
{
    const std::lock_guard guard(mutex_);
    std::erase_if(entries_, [&](const Entry& entry) { return entry.key == key; });
    entries_.push_back({std::string(key), value});
}

const OverlayUserDefaults::Entry* OverlayUserDefaults::find(std::string_view key) const
{
    const auto found = std::find_if(entries_.begin(), entries_.end(),
                                    [&](const Entry& entry) { return entry.key == key; });
    return found == entries_.end() ? nullptr : &*found;
}

}  // namespace dunmora
