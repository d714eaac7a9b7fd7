#pragma once

#include "text/TextIndex.h"

#include <cstddef>
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
        if (!index_.fits(count)) {
            rebuild(count);
        }
    }

    void clear()
    {
        ++positionsChanged_;
        entries_.clear();
        index_ = {};
        size_ = 0;
    }

    /// The value under the key; null if there is none.
    Value* find(std::string_view key) { return const_cast<Value*>(std::as_const(*this).find(key)); }
    const Value* find(std::string_view key) const
    {
        const auto position = positionOf(key);
        return position == TextIndex::kNowhere ? nullptr : &entries_[position].value;
    }

    static constexpr auto kNowhere = TextIndex::kNowhere;

    /// Where the value under the key is, for `at`; `kNowhere` if there is none.
    std::size_t positionOf(std::string_view key) const { return index_.find(key, hasKey(key)); }

    /// The value at a position that `positionOf` has returned since `positionsChanged` changed
    /// last; null once its key has been removed.
    Value* at(std::size_t position)
    {
        return const_cast<Value*>(std::as_const(*this).at(position));
    }
    const Value* at(std::size_t position) const
    {
        const auto& entry = entries_[position];
        return entry.erased ? nullptr : &entry.value;
    }

    /// How often values have moved to other positions.
    std::size_t positionsChanged() const { return positionsChanged_; }

    /// The value under the key, default-constructed if there is none.
    Value& operator[](std::string_view key)
    {
        if (!index_.fits(entries_.size() + 1)) {
            rebuild(2 * size_ + 1);
        }
        const auto append = [&] {
            entries_.emplace_back().key = key;
            ++size_;
            return entries_.size() - 1;
        };
        return entries_[index_.findOrAdd(key, hasKey(key), append).first].value;
    }

    /// Removes the key and its value. Returns whether the key was present.
    bool erase(std::string_view key)
    {
        const auto position = positionOf(key);
        if (position == TextIndex::kNowhere) {
            return false;
        }
        // The entry keeps its place in both until the next rebuild, so that the others keep theirs.
        auto& entry = entries_[position];
        entry.erased = true;
        entry.value = Value();
        --size_;
        return true;
    }

private:
    auto hasKey(std::string_view key) const
    {
        return [this, key](std::size_t position) {
            const auto& entry = entries_[position];
            return !entry.erased && entry.key == key;
        };
    }

    /// Drops the erased entries and rebuilds the index with space for `count` keys.
    void rebuild(std::size_t count)
    {
        ++positionsChanged_;
        std::erase_if(entries_, [](const Entry& entry) { return entry.erased; });
        index_.reset(count);
        for (std::size_t i = 0; i < entries_.size(); ++i) {
            index_.add(entries_[i].key, i);
        }
    }

    std::vector<Entry> entries_;
    TextIndex index_;
    std::size_t size_ = 0;
    std::size_t positionsChanged_ = 0;
};

}  // namespace dunmora
