#include "text/SharedFlags.h"

#include <algorithm>
#include <utility>

namespace dunmora {

SharedFlags::SharedFlags()
{
    publish({});
}

const bool* SharedFlags::find(std::string_view name) const
{
    const auto& table = *current_.load(std::memory_order_acquire);
    const auto found = std::lower_bound(
        table.begin(), table.end(), name,
        [](const Flag& flag, std::string_view wanted) { return isBefore(flag.name, wanted); });
    return found != table.end() && found->name == name ? &found->value : nullptr;
}

void SharedFlags::set(std::string_view name, bool value)
{
    const std::lock_guard guard(changes_);
    auto table = *tables_.back();
    const auto place = std::find_if(table.begin(), table.end(),
                                    [&](const Flag& flag) { return !isBefore(flag.name, name); });
    if (place != table.end() && place->name == name) {
        place->value = value;
    } else {
        table.insert(place, {std::string(name), value});
    }
    publish(std::move(table));
}

void SharedFlags::replace(const Flags& flags)
{
    Table table;
    table.reserve(flags.size());
    for (const auto& [name, value] : flags) {
        table.push_back({name, value});
    }
    std::sort(table.begin(), table.end(),
              [](const Flag& a, const Flag& b) { return isBefore(a.name, b.name); });
    const std::lock_guard guard(changes_);
    publish(std::move(table));
}

bool SharedFlags::isBefore(std::string_view a, std::string_view b)
{
    return a.size() != b.size() ? a.size() < b.size() : a < b;
}

void SharedFlags::publish(Table table)
{
    // Otherwise flags that are stored again and again would take more and more memory.
    if (!tables_.empty() && *tables_.back() == table) {
        return;
    }
    tables_.push_back(std::make_unique<const Table>(std::move(table)));
    current_.store(tables_.back().get(), std::memory_order_release);
}

}  // namespace dunmora
