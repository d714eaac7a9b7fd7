#pragma once

#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace dunmora {

/// Assigns every card of a book a unique id, which stays the same on every run while the card is
/// unchanged.
///
/// Thread: any, one at a time. The ids are views into the cards' own UIDs, which must outlive the
/// registry, or into the registry.
class UidRegistry final {
public:
    /// Reserves memory for `count` ids in total.
    void reserve(std::size_t count);

    /// Returns the card's own UID when it has one that no earlier card took; otherwise an id
    /// derived from the card's content, with a number when even that is taken.
    std::string_view assign(std::string_view ownUid, std::string_view card);

private:
    /// A slot of an open-addressing hash table. It holds part of the hash, so that a lookup rarely
    /// compares other ids. With a million cards, std::unordered_set takes two to six times as long,
    /// depending on the ids, because it allocates a node for each.
    struct Slot {
        // The position in `taken_`, counted from 1; 0 in a free slot.
        std::uint32_t id = 0;
        std::uint32_t hash = 0;
    };

    bool take(std::string_view uid);
    Slot* slotOf(std::string_view uid, std::uint64_t hash);
    void rebuild(std::size_t count);
    std::string_view keep(const std::string& text);

    std::pmr::monotonic_buffer_resource memory_;
    std::vector<std::string_view> taken_;
    // The size is a power of two; at least half of the slots are free.
    std::vector<Slot> slots_;
    // The number of copies of each id, so that thousands of equal cards do not each try every
    // number.
    std::unordered_map<std::string, std::size_t> copies_;
};

}  // namespace dunmora
