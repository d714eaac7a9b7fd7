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
    // There are a handful, of different sizes: no sorted table is searched as fast.
    const auto& table = *current_.load(std::memory_order_acquire);
    const auto found = std::find_if(table.begin(), table.end(),
                                    [&](const Flag& flag) { return flag.name == name; });
    return found != table.end() ? &found->value : nullptr;
}

void SharedFlags::set(std::string_view name, bool value)
{
    const std::lock_guard guard(changes_);
    auto table = *tables_.back();
    const auto place = std::find_if(table.begin(), table.end(),
                                    [&](const Flag& flag) { return flag.name == name; });
    if (place != table.end()) {
        place->value = value;
    } else {
        table.push_back({std::string(name), value});
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
    const std::lock_guard guard(changes_);
    publish(std::move(table));
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
