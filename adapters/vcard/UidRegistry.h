#pragma once

#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace dunmora {

/// Gives every card of a book an id that no other has, the same on every run as long as the card is
/// the same.
///
/// Thread: one at a time. The ids are views into the cards' own UIDs, which must last as long as
/// the registry does, or into the registry.
class UidRegistry final {
public:
    /// Makes room for so many ids in all.
    void reserve(std::size_t count);

    /// The card's own UID when it has one and no earlier card has taken it; otherwise an id made
    /// from the card's content, numbered where even that is taken.
    std::string_view give(std::string_view ownUid, std::string_view card);

private:
    /// Where an id is found by its hash. A part of the hash stands here, too, so that a search need
    /// not look at ids that are not the one; a set of the standard library takes four times as
    /// long, which is felt with a million cards.
    struct Slot {
        // The position in `given_`, counted from 1; 0 where there is none.
        std::uint32_t id = 0;
        std::uint32_t hash = 0;
    };

    bool take(std::string_view uid);
    Slot* slotOf(std::string_view uid, std::uint64_t hash);
    void layOut(std::size_t count);
    std::string_view keep(const std::string& text);

    std::pmr::monotonic_buffer_resource memory_;
    std::vector<std::string_view> given_;
    // A power of two of them, at least half of them free.
    std::vector<Slot> slots_;
    // How many copies of an id have been asked for, so that thousands of equal cards do not try
    // all numbers each.
    std::unordered_map<std::string, std::size_t> copies_;
};

}  // namespace dunmora
