#pragma once

#include "text/Prefetch.h"
#include "text/TextHash.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>
#include <utility>
#include <vector>

namespace dunmora {

/// Finds the positions of texts in a sequence that the caller keeps: an open-addressing hash table.
/// With a million texts, std::unordered_set takes two to six times as long, depending on the texts,
/// because it allocates a node for each.
///
/// Every function that takes a text also takes its hash instead: a text that several tables look
/// for is hashed once, and `visitWithLookAhead` can ask for the slots of the texts to come.
///
/// Thread: as a standard container. Errors: as `textHash`.
class TextIndex final {
public:
    static constexpr auto kNowhere = std::numeric_limits<std::size_t>::max();

    /// Whether this many texts fit; the caller resets the index before it adds more.
    bool fits(std::size_t count) const { return slots_.size() >= 2 * count; }

    /// Forgets all texts and makes space for `count`.
    void reset(std::size_t count)
    {
        slots_.assign(std::bit_ceil(std::max<std::size_t>(2 * count, kFewestSlots)), Slot());
    }

    /// The hash by which every index finds the text.
    static std::uint64_t hashOf(std::string_view text) { return textHash(text); }

    /// Asks the processor for the memory in which a text with this hash is looked for, so that it
    /// arrives while other work is done.
    void prefetch(std::uint64_t hash) const
    {
        if (!slots_.empty()) {
            dunmora::prefetch(&slots_[firstSlot(hash)]);
        }
    }

    /// The position of the text; `kNowhere` if there is none. `isAt(position)` is whether the text
    /// is there.
    template <typename IsAt>
    std::size_t find(std::string_view text, IsAt isAt) const
    {
        return find(hashOf(text), isAt);
    }
    template <typename IsAt>
    std::size_t find(std::uint64_t hash, IsAt isAt) const
    {
        if (slots_.empty()) {
            return kNowhere;
        }
        const auto& slot = slots_[slotOf(hash, isAt)];
        return slot.isFree() ? kNowhere : slot.position();
    }

    /// Returns the position of the text and whether it is new. `append()` appends a new text to the
    /// sequence and returns its position; the index is unchanged when it throws.
    template <typename IsAt, typename Append>
    std::pair<std::size_t, bool> findOrAdd(std::string_view text, IsAt isAt, Append append)
    {
        return findOrAdd(hashOf(text), isAt, append);
    }
    template <typename IsAt, typename Append>
    std::pair<std::size_t, bool> findOrAdd(std::uint64_t hash, IsAt isAt, Append append)
    {
        auto& slot = slots_[slotOf(hash, isAt)];
        if (!slot.isFree()) {
            return {slot.position(), false};
        }
        slot = {static_cast<std::uint32_t>(append() + 1), upperHalf(hash)};
        return {slot.position(), true};
    }

    /// Adds a text that has no position yet.
    void add(std::string_view text, std::size_t position) { add(hashOf(text), position); }
    void add(std::uint64_t hash, std::size_t position)
    {
        findOrAdd(
            hash, [](std::size_t) { return false; }, [&] { return position; });
    }

    /// The most slots that a search looks at. For tests; reads all slots.
    std::size_t longestSearch() const
    {
        std::size_t longest = 0;
        std::size_t current = 0;
        // Twice, because a run of used slots may continue at the beginning.
        for (std::size_t i = 0; i < 2 * slots_.size(); ++i) {
            current = slots_[i % slots_.size()].isFree() ? 0 : current + 1;
            longest = std::max(longest, current + 1);
        }
        return longest;
    }

private:
    /// The lower half of the hash chooses the slot; the upper half is in it, so that a search
    /// seldom reads a text that does not match.
    struct Slot {
        // Counted from 1; 0 in a free slot.
        std::uint32_t number = 0;
        std::uint32_t hash = 0;

        bool isFree() const { return number == 0; }
        std::size_t position() const { return number - 1; }
    };

    static constexpr std::size_t kFewestSlots = 16;

    static std::uint32_t upperHalf(std::uint64_t hash)
    {
        return static_cast<std::uint32_t>(hash >> 32U);
    }

    std::size_t firstSlot(std::uint64_t hash) const
    {
        return static_cast<std::size_t>(hash) & (slots_.size() - 1);
    }

    /// The slot of the text, or the free slot for it.
    template <typename IsAt>
    std::size_t slotOf(std::uint64_t hash, IsAt isAt) const
    {
        const auto mask = slots_.size() - 1;
        auto slot = firstSlot(hash);
        while (!slots_[slot].isFree() &&
               (slots_[slot].hash != upperHalf(hash) || !isAt(slots_[slot].position()))) {
            slot = (slot + 1) & mask;
        }
        return slot;
    }

    // A power of two; at least half of the slots are free.
    std::vector<Slot> slots_;
};

}  // namespace dunmora
