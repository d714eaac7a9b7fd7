#pragma once

#include "platform/Person.h"
#include "text/TextHash.h"
#include "text/TextIndex.h"

#include <cstddef>
#include <cstdint>
#include <memory_resource>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace dunmora {

/// Assigns every card of a book a unique id, which stays the same on every run while the card is
/// unchanged.
///
/// Thread: as a standard container. The ids are views into the cards' own UIDs, which must outlive
/// the registry, or into the registry.
class UidRegistry final {
public:
    /// Reserves memory for `count` ids in total.
    void reserve(std::size_t count);

    /// Returns the card's own UID when it has one that no earlier card took; otherwise an id
    /// derived from the card's content, with a number when even that is taken.
    std::string_view assign(std::string_view ownUid, std::string_view card)
    {
        return assign(ownUid, TextIndex::hashOf(ownUid), card);
    }

    /// Asks the processor for the memory in which `assign` will look for a UID with this hash.
    void announce(std::uint64_t hash) const { index_.prefetch(hash); }
    /// The same as the other `assign`, for a UID whose `TextIndex` hash is known.
    std::string_view assign(std::string_view ownUid, std::uint64_t hash, std::string_view card);

    /// Assigns the people of the first cards their own UIDs, on at most this many threads. Returns
    /// false, and assigns nothing, when a card before them has an id, a UID is empty, or two are
    /// equal. The people must stay where they are, and keep their UIDs, until `copyIds` is called.
    bool assignAll(std::span<const Person> people, std::span<const std::uint64_t> hashes,
                   std::size_t threads);
    /// Copies the list of the people's ids, so that the people may move or go. Until then their ids
    /// take no memory of their own.
    void copyIds();

    /// How many ids had been assigned before this one; nothing for an unknown id.
    std::optional<std::size_t> find(std::string_view uid) const;

private:
    /// How many ids have been assigned.
    std::size_t count() const { return people_.size() + taken_.size(); }
    std::string_view idAt(std::size_t number) const
    {
        return number < people_.size() ? people_[number].uid : taken_[number - people_.size()];
    }
    bool take(std::string_view uid, std::uint64_t hash);
    void rebuild(std::size_t count);
    std::string_view keep(const std::string& text);

    std::pmr::monotonic_buffer_resource memory_;
    // Those who have the first ids, until these are copied.
    std::span<const Person> people_;
    // All further ids.
    std::vector<std::string_view> taken_;
    TextIndex index_;
    // The number of copies of each id, so that thousands of equal cards do not each try every
    // number.
    std::unordered_map<std::string, std::size_t, TextHash> copies_;
};

}  // namespace dunmora
