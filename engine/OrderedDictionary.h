#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace dunmora {

/// A dictionary from text keys to values that iterates in the order in which its keys were first
/// stored, so that the same address book gives the same rows on every platform and in every run.
/// Storing, finding and erasing take constant time on average.
///
/// Thread: as a standard container. References to values are valid until a new key is stored.
template <typename Value>
class OrderedDictionary {
    struct Entry {
        std::string key;
        std::uint32_t hash = 0;
        bool erased = false;
        Value value;
    };

    /// Iterates over the entries that are not erased.
    template <typename EntryIterator>
    class Iterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = Entry;
        using difference_type = std::ptrdiff_t;
        using pointer = decltype(&*std::declval<EntryIterator>());
        using reference = decltype(*std::declval<EntryIterator>());

        Iterator() = default;
        Iterator(EntryIterator at, EntryIterator end) : at_(at), end_(end) { skipErased(); }

        reference operator*() const { return *at_; }
        pointer operator->() const { return &*at_; }
        Iterator& operator++()
        {
            ++at_;
            skipErased();
            return *this;
        }
        Iterator operator++(int)
        {
            auto before = *this;
            ++*this;
            return before;
        }
        bool operator==(const Iterator& other) const { return at_ == other.at_; }

    private:
        void skipErased()
        {
            while (at_ != end_ && at_->erased) {
                ++at_;
            }
        }

        EntryIterator at_{};
        EntryIterator end_{};
    };

public:
    using iterator = Iterator<typename std::vector<Entry>::iterator>;
    using const_iterator = Iterator<typename std::vector<Entry>::const_iterator>;

    /// Each element has the members `key` and `value`.
    iterator begin() { return {entries_.begin(), entries_.end()}; }
    iterator end() { return {entries_.end(), entries_.end()}; }
    const_iterator begin() const { return {entries_.begin(), entries_.end()}; }
    const_iterator end() const { return {entries_.end(), entries_.end()}; }

    std::size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }

    /// Reserves space for `count` keys in total.
    void reserve(std::size_t count)
    {
        entries_.reserve(count);
        if (slots_.size() < slotsFor(count)) {
            rebuild(count);
        }
    }

    void clear()
    {
        entries_.clear();
        slots_.clear();
        size_ = 0;
    }

    /// The value under the key; null if there is none.
    Value* find(std::string_view key) { return const_cast<Value*>(std::as_const(*this).find(key)); }
    const Value* find(std::string_view key) const
    {
        const auto slot = slotOf(key, hashOf(key));
        return slot == kNoSlot || slots_[slot].isFree() ? nullptr
                                                        : &entries_[slots_[slot].entry - 1].value;
    }

    /// The value under the key, default-constructed if there is none.
    Value& operator[](std::string_view key)
    {
        if (slots_.size() < 2 * (entries_.size() + 1)) {
            rebuild(2 * size_ + 1);
        }
        const auto hash = hashOf(key);
        const auto slot = slotOf(key, hash);
        if (slots_[slot].isFree()) {
            auto& entry = entries_.emplace_back();
            entry.key = key;
            entry.hash = hash;
            slots_[slot] = {static_cast<std::uint32_t>(entries_.size()), hash};
            ++size_;
        }
        return entries_[slots_[slot].entry - 1].value;
    }

    /// Removes the key and its value. Returns whether the key was present.
    bool erase(std::string_view key)
    {
        const auto slot = slotOf(key, hashOf(key));
        if (slot == kNoSlot || slots_[slot].isFree()) {
            return false;
        }
        // The entry keeps its place and its slot until the next rebuild, so that the others keep
        // theirs.
        auto& entry = entries_[slots_[slot].entry - 1];
        entry.erased = true;
        entry.value = Value();
        --size_;
        return true;
    }

private:
    /// Points to an entry. Repeats its hash so that a search seldom reads an entry that does not
    /// match: entries are far apart in memory.
    struct Slot {
        /// The entry's number, counted from 1.
        std::uint32_t entry = 0;
        std::uint32_t hash = 0;

        bool isFree() const { return entry == 0; }
    };

    static constexpr std::size_t kNoSlot = static_cast<std::size_t>(-1);

    static std::uint32_t hashOf(std::string_view key)
    {
        return static_cast<std::uint32_t>(std::hash<std::string_view>()(key));
    }

    /// A power of two that keeps at least half of the slots free.
    static std::size_t slotsFor(std::size_t count)
    {
        return std::bit_ceil(std::max<std::size_t>(2 * count, 16));
    }

    /// The slot of the key, or the free slot where it belongs; `kNoSlot` when there are no slots.
    std::size_t slotOf(std::string_view key, std::uint32_t hash) const
    {
        if (slots_.empty()) {
            return kNoSlot;
        }
        const auto mask = slots_.size() - 1;
        auto slot = hash & mask;
        while (!slots_[slot].isFree()) {
            if (slots_[slot].hash == hash) {
                const auto& entry = entries_[slots_[slot].entry - 1];
                if (!entry.erased && entry.key == key) {
                    break;
                }
            }
            slot = (slot + 1) & mask;
        }
        return slot;
    }

    /// Drops the erased entries and rebuilds the slots with space for `count` keys.
    void rebuild(std::size_t count)
    {
        std::erase_if(entries_, [](const Entry& entry) { return entry.erased; });
        slots_.assign(slotsFor(count), Slot());
        const auto mask = slots_.size() - 1;
        for (std::size_t i = 0; i < entries_.size(); ++i) {
            auto slot = entries_[i].hash & mask;
            while (!slots_[slot].isFree()) {
                slot = (slot + 1) & mask;
            }
            slots_[slot] = {static_cast<std::uint32_t>(i + 1), entries_[i].hash};
        }
    }

    std::vector<Entry> entries_;
    std::vector<Slot> slots_;
    std::size_t size_ = 0;
};

}  // namespace dunmora
