#pragma once

#include <cstddef>
#include <memory_resource>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>

namespace dunmora {

/// Gives every card of a book an id that no other has, the same on every run as long as the card is
/// the same.
///
/// Thread: one at a time. The ids are views into the cards or into the registry.
class UidRegistry final {
public:
    /// Makes room for so many ids in all.
    void reserve(std::size_t count) { given_.reserve(count); }

    /// The card's own UID when it has one and no earlier card has taken it; otherwise an id made
    /// from the card's content, numbered where even that is taken.
    std::string_view give(std::string_view ownUid, std::string_view card);

private:
    std::string_view keep(const std::string& text);

    std::pmr::monotonic_buffer_resource memory_;
    std::pmr::unordered_set<std::string_view> given_{&memory_};
    // How many copies of an id have been asked for, so that thousands of equal cards do not try
    // all numbers each.
    std::unordered_map<std::string, std::size_t> copies_;
};

}  // namespace dunmora
