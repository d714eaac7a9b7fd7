#include "text/SharedFlags.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <utility>

namespace dunmora {

namespace {

constexpr std::size_t kWord = sizeof(std::uint64_t);

/// Whether its two ends are all that a text of this size has. So it is with the preferences that
/// are read for every person.
constexpr bool isAllEnds(std::size_t size)
{
    return size >= kWord && size <= 2 * kWord;
}

/// The first and the last eight characters of a text, which may overlap: compared without a call.
struct Ends {
    explicit Ends(std::string_view text)
    {
        std::memcpy(&first, text.data(), kWord);
        std::memcpy(&last, text.data() + text.size() - kWord, kWord);
    }

    bool operator==(const Ends&) const = default;

    std::uint64_t first = 0;
    std::uint64_t last = 0;
};

}  // namespace

SharedFlags::SharedFlags()
{
    publish({});
}

const bool* SharedFlags::find(std::string_view name) const
{
    // There are a handful: no hashed or sorted table is searched as fast.
    const auto& table = *current_.load(std::memory_order_acquire);
    if (!isAllEnds(name.size())) {
        return findIn(table, name);
    }
    const Ends ends(name);
    for (const auto& flag : table) {
        if (flag.name.size() == name.size() && Ends(flag.name) == ends) {
            return &flag.value;
        }
    }
    return nullptr;
}

const bool* SharedFlags::findIn(const Table& table, std::string_view name)
{
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
