#pragma once

#include "engine/TextArena.h"
#include "text/TextIndex.h"

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace dunmora {

/// A dictionary from text keys to values that iterates in the order in which its keys were first
/// stored, so that the same address book gives the same rows on every platform and in every run.
/// Storing, finding and erasing take constant time on average.
///
/// Every entry has a position, counted from 0 in the order of storing, which it keeps until
/// `clear`. A key that was erased keeps its position and its memory until then, too, and so does
/// its value; stored again, it gets another position.
///
/// Thread: as a standard container. References to values are valid until a new key is stored.
template <typename Value>
class OrderedDictionary {
    struct Entry {
        explicit Entry(std::string_view keptKey) : key(keptKey) {}
        /// Creates the value in its place: moving one would cost almost as much again.
        template <typename Make, typename KeyOf>
        Entry(Make make, KeyOf keyOf) : value(make())
        {
            key = keyOf(std::as_const(value));
        }

        // In `texts` of the storage.
        std::string_view key;
        Value value{};
    };

    using Entries = std::vector<Entry>;

    struct Storage {
        bool isErased(std::size_t position) const
        {
            return position < erased.size() && erased[position];
        }

        TextArena texts;
        Entries entries;
        // By position; entries past its end are not erased. Usually nothing is.
        std::vector<bool> erased;
    };

    /// Iterates over the entries that are not erased.
    template <typename StorageType>
    class Iterator {
    public:
        using iterator_category = std::forward_iterator_tag;
        using value_type = Entry;
        using difference_type = std::ptrdiff_t;
        using reference = std::conditional_t<std::is_const_v<StorageType>, const Entry&, Entry&>;
        using pointer = std::remove_reference_t<reference>*;

        Iterator() = default;
        Iterator(StorageType* storage, std::size_t position)
            : storage_(storage), position_(position)
        {
            skipErased();
        }

        /// Where the entry is, for `at`.
        std::size_t position() const { return position_; }

        reference operator*() const { return storage_->entries[position_]; }
        pointer operator->() const { return &storage_->entries[position_]; }
        Iterator& operator++()
        {
            ++position_;
            skipErased();
            return *this;
        }
        Iterator operator++(int)
        {
            auto before = *this;
            ++*this;
            return before;
        }
        bool operator==(const Iterator& other) const { return position_ == other.position_; }

    private:
        void skipErased()
        {
            while (storage_ != nullptr && storage_->isErased(position_)) {
                ++position_;
            }
        }

        StorageType* storage_ = nullptr;
        std::size_t position_ = 0;
    };

public:
    using iterator = Iterator<Storage>;
    using const_iterator = Iterator<const Storage>;

    static constexpr auto kNowhere = TextIndex::kNowhere;

    /// The keys and values by position, erased ones included. They stay readable whatever becomes
    /// of the dictionary.
    class Contents final {
    public:
        Contents() = default;
        explicit Contents(std::shared_ptr<const Storage> storage) : storage_(std::move(storage)) {}

        std::string_view key(std::size_t position) const { return storage_->entries[position].key; }
        /// The value now, or when its key was erased.
        const Value& value(std::size_t position) const { return storage_->entries[position].value; }

    private:
        friend class OrderedDictionary;

        std::shared_ptr<const Storage> storage_;
    };

    OrderedDictionary() = default;
    ~OrderedDictionary() = default;
    OrderedDictionary(const OrderedDictionary&) = delete;
    OrderedDictionary& operator=(const OrderedDictionary&) = delete;
    /// The other dictionary is empty afterwards.
    OrderedDictionary(OrderedDictionary&& other) noexcept { swap(other); }
    OrderedDictionary& operator=(OrderedDictionary&& other) noexcept
    {
        clear();
        swap(other);
        return *this;
    }

    /// Each element has the members `key` and `value`.
    iterator begin() { return {storage_.get(), 0}; }
    iterator end() { return {storage_.get(), positions()}; }
    const_iterator begin() const { return {storage_.get(), 0}; }
    const_iterator end() const { return {storage_.get(), positions()}; }

    std::size_t size() const { return size_; }
    bool empty() const { return size_ == 0; }

    /// How many positions there are, those of erased keys included.
    std::size_t positions() const { return storage_ ? storage_->entries.size() : 0; }

    /// Reserves space for `count` keys in total.
    void reserve(std::size_t count)
    {
        storage().entries.reserve(count);
        if (!index_.fits(count)) {
            rebuild(count);
        }
    }

    void clear()
    {
        storage_.reset();
        index_ = {};
        size_ = 0;
    }

    Contents contents() const { return Contents(storage_); }

    /// Whether these contents are the dictionary's own: positions in them are positions here. Not
    /// so once the dictionary has been cleared.
    bool has(const Contents& contents) const { return contents.storage_ == storage_; }

    /// The value under the key; null if there is none.
    Value* find(std::string_view key) { return const_cast<Value*>(std::as_const(*this).find(key)); }
    const Value* find(std::string_view key) const
    {
        const auto position = positionOf(key);
        return position == kNowhere ? nullptr : &storage_->entries[position].value;
    }

    /// Asks the processor for the memory in which a key with this hash (`TextIndex::hashOf`) is
    /// looked for.
    void prefetch(std::uint64_t hash) const { index_.prefetch(hash); }

    /// Where the value under the key is, for `at`; `kNowhere` if there is none.
    std::size_t positionOf(std::string_view key) const
    {
        return positionOf(key, TextIndex::hashOf(key));
    }
    std::size_t positionOf(std::string_view key, std::uint64_t hash) const
    {
        return index_.find(hash, hasKey(key));
    }

    /// The value at a position that exists; null once its key has been erased.
    Value* at(std::size_t position)
    {
        return const_cast<Value*>(std::as_const(*this).at(position));
    }
    const Value* at(std::size_t position) const
    {
        return storage_->isErased(position) ? nullptr : &storage_->entries[position].value;
    }

    /// The value under the key, default-constructed if there is none.
    Value& operator[](std::string_view key) { return valueUnder(key, TextIndex::hashOf(key)); }
    Value& valueUnder(std::string_view key, std::uint64_t hash)
    {
        return entryFor(key, hash,
                        [&](Entries& entries) { entries.emplace_back(storage_->texts.store(key)); })
            .value;
    }

    /// Memory for the texts of keys and values, freed with the keys by `clear`.
    TextArena& texts() { return storage().texts; }

    /// Stores the value that `make()` returns under the key, whose hash is given, in place of an
    /// earlier one. `keyOf(value)` is the same key in `texts`.
    template <typename Make, typename KeyOf>
    void store(std::string_view key, std::uint64_t hash, Make make, KeyOf keyOf)
    {
        bool isNew = false;
        auto& entry = entryFor(key, hash, [&](Entries& entries) {
            entries.emplace_back(make, keyOf);
            isNew = true;
        });
        if (!isNew) {
            entry.value = make();
        }
    }

    /// Removes the key and its value. Returns whether the key was present.
    bool erase(std::string_view key)
    {
        const auto position = positionOf(key);
        if (position == kNowhere) {
            return false;
        }
        eraseAt(position);
        return true;
    }

    /// Removes the key at this position, which must not have been erased, and its value.
    void eraseAt(std::size_t position)
    {
        auto& erased = storage_->erased;
        if (position >= erased.size()) {
            erased.resize(positions());
        }
        erased[position] = true;
        --size_;
    }

private:
    Storage& storage()
    {
        if (!storage_) {
            storage_ = std::make_shared<Storage>();
        }
        return *storage_;
    }

    void swap(OrderedDictionary& other) noexcept
    {
        std::swap(storage_, other.storage_);
        std::swap(index_, other.index_);
        std::swap(size_, other.size_);
    }

    auto hasKey(std::string_view key) const
    {
        return [this, key](std::size_t position) {
            return storage_->entries[position].key == key && !storage_->isErased(position);
        };
    }

    /// The entry with the key, which `append(entries)` appends if there is none.
    template <typename Append>
    Entry& entryFor(std::string_view key, std::uint64_t hash, Append append)
    {
        auto& entries = storage().entries;
        if (!index_.fits(entries.size() + 1)) {
            rebuild(2 * entries.size() + 1);
        }
        const auto appendEntry = [&] {
            append(entries);
            ++size_;
            return entries.size() - 1;
        };
        return entries[index_.findOrAdd(hash, hasKey(key), appendEntry).first];
    }

    /// Rebuilds the index with space for `count` keys.
    void rebuild(std::size_t count)
    {
        index_.reset(count);
        for (auto at = begin(); at != end(); ++at) {
            index_.add(at->key, at.position());
        }
    }

    // Null while nothing has been stored: clearing never allocates. Shared with the `Contents`.
    std::shared_ptr<Storage> storage_;
    TextIndex index_;
    std::size_t size_ = 0;
};

}  // namespace dunmora
