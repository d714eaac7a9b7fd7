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

    /// Forgets all texts and makes space for `count`, whose positions are less than `count`.
    void reset(std::size_t count)
    {
        slots_.assign(std::bit_ceil(std::max<std::size_t>(2 * count, kFewestSlots)), kFree);
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
        const auto slot = slots_[slotOf(hash, isAt)];
        return slot == kFree ? kNowhere : positionIn(slot);
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
        if (slot != kFree) {
            return {positionIn(slot), false};
        }
        slot = slotFor(hash, append());
        return {positionIn(slot), true};
    }

    /// Gives the text another position, or a new text its first one. Returns the position before;
    /// `kNowhere` for a new text.
    template <typename IsAt>
    std::size_t exchange(std::uint64_t hash, std::size_t position, IsAt isAt)
    {
        auto& slot = slots_[slotOf(hash, isAt)];
        const auto before = slot == kFree ? kNowhere : positionIn(slot);
        slot = slotFor(hash, position);
        return before;
    }

    /// Adds a text that has no position yet.
    void add(std::string_view text, std::size_t position) { add(hashOf(text), position); }
    void add(std::uint64_t hash, std::size_t position)
    {
        findOrAdd(
            hash, [](std::size_t) { return false; }, [&] { return position; });
    }

    /// A part of the slots. Several threads may add texts at the same time when each has a part of
    /// its own, and nobody does anything else with the index meanwhile.
    struct Part {
        std::size_t begin;
        std::size_t end;
    };

    /// Part `number`, counted from 0, of `count` parts of about the same size.
    Part part(std::size_t number, std::size_t count) const
    {
        return {slots_.size() * number / count, slots_.size() * (number + 1) / count};
    }

    /// Whether the search for a text with this hash begins in the part.
    bool beginsIn(const Part& part, std::uint64_t hash) const
    {
        const auto slot = firstSlot(hash);
        return slot >= part.begin && slot < part.end;
    }

    enum class Addition {
        Done,
        /// The text has a position already.
        Known,
        /// Nothing was added: the search for the text leaves the part.
        LeavesPart,
    };

    /// Adds a text whose search begins in the part.
    template <typename IsAt>
    Addition addIn(const Part& part, std::uint64_t hash, std::size_t position, IsAt isAt)
    {
        for (auto i = firstSlot(hash); i < part.end; ++i) {
            if (slots_[i] == kFree) {
                slots_[i] = slotFor(hash, position);
                return Addition::Done;
            }
            if (mayBeOf(slots_[i], hash) && isAt(positionIn(slots_[i]))) {
                return Addition::Known;
            }
        }
        return Addition::LeavesPart;
    }

    /// The most slots that a search looks at. For tests; reads all slots.
    std::size_t longestSearch() const
    {
        std::size_t longest = 0;
        std::size_t current = 0;
        // Twice, because a run of used slots may continue at the beginning.
        for (std::size_t i = 0; i < 2 * slots_.size(); ++i) {
            current = slots_[i % slots_.size()] == kFree ? 0 : current + 1;
            longest = std::max(longest, current + 1);
        }
        return longest;
    }

private:
    /// In the lower bits the position of a text, counted from 1, for which as many bits are enough
    /// as for the number of a slot. In the other bits those of the upper half of the hash, whose
    /// lower half chooses the slot: a search seldom reads a text that does not match.
    using Slot = std::uint32_t;

    static constexpr Slot kFree = 0;
    static constexpr std::size_t kFewestSlots = 16;

    Slot positionBits() const { return static_cast<Slot>(slots_.size() - 1); }
    Slot hashBits(std::uint64_t hash) const
    {
        return static_cast<Slot>(hash >> 32U) & ~positionBits();
    }

    Slot slotFor(std::uint64_t hash, std::size_t position) const
    {
        return hashBits(hash) | static_cast<Slot>(position + 1);
    }
    /// Whether a slot that is not free can be that of a text with this hash.
    bool mayBeOf(Slot slot, std::uint64_t hash) const
    {
        return (slot & ~positionBits()) == hashBits(hash);
    }
    std::size_t positionIn(Slot slot) const { return (slot & positionBits()) - 1; }

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
        while (slots_[slot] != kFree &&
               (!mayBeOf(slots_[slot], hash) || !isAt(positionIn(slots_[slot])))) {
            slot = (slot + 1) & mask;
        }
        return slot;
    }

    // A power of two; at least half of the slots are free.
    std::vector<Slot> slots_;
};

}  // namespace dunmora
