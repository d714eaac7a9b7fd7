#pragma once

#include "engine/ContactRecord.h"
#include "engine/OrderedDictionary.h"

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace dunmora {

/// Groups of people by match key, in the order in which their first members were added: a
/// dictionary from each key to the uids of the people who have it.
///
/// A group is a chain of positions in the dictionary of the contacts, four bytes a person: of a
/// million people most have no duplicate. The groups list the same uids whatever becomes of the
/// contacts.
///
/// Thread: as a standard container.
class ContactGroups final {
public:
    using Contacts = OrderedDictionary<ContactRecord>;

private:
    struct Chain {
        // The first one comes after it.
        std::uint32_t last = 0;
        std::uint32_t size = 0;
    };
    using Chains = OrderedDictionary<Chain>;

public:
    /// The uids of a group, in the order in which they were added.
    class Uids final {
    public:
        class Iterator final {
        public:
            using iterator_category = std::input_iterator_tag;
            using value_type = std::string_view;
            using difference_type = std::ptrdiff_t;
            using pointer = const std::string_view*;
            using reference = std::string_view;

            Iterator(const ContactGroups* groups, std::uint32_t position, std::uint32_t left)
                : groups_(groups), position_(position), left_(left)
            {
            }

            /// Where the contacts had the person when the group was formed.
            std::size_t position() const { return position_; }

            std::string_view operator*() const { return groups_->uids_[position_]; }
            Iterator& operator++()
            {
                --left_;
                position_ = groups_->next_[position_];
                return *this;
            }
            bool operator==(const Iterator& other) const { return left_ == other.left_; }

        private:
            const ContactGroups* groups_;
            std::uint32_t position_;
            // How many members follow, this one included.
            std::uint32_t left_;
        };

        Uids(const ContactGroups& groups, const Chain& chain) : groups_(&groups), chain_(chain) {}

        std::size_t size() const { return chain_.size; }
        Iterator begin() const { return {groups_, groups_->next_[chain_.last], chain_.size}; }
        Iterator end() const { return {groups_, chain_.last, 0}; }

    private:
        const ContactGroups* groups_;
        Chain chain_;
    };

    /// Views of the groups.
    struct Group {
        std::string_view key;
        Uids value;
    };

    class Iterator final {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = Group;
        using difference_type = std::ptrdiff_t;
        using pointer = const Group*;
        using reference = Group;

        Iterator(const ContactGroups* groups, Chains::const_iterator at) : groups_(groups), at_(at)
        {
        }

        Group operator*() const { return {at_->key, {*groups_, at_->value}}; }
        Iterator& operator++()
        {
            ++at_;
            return *this;
        }
        bool operator==(const Iterator& other) const { return at_ == other.at_; }

    private:
        const ContactGroups* groups_;
        Chains::const_iterator at_;
    };

    /// No groups.
    ContactGroups() = default;

    /// No groups yet, with space for as many as there are contacts.
    explicit ContactGroups(const Contacts& contacts) : uids_(contacts.keys())
    {
        chains_.reserve(contacts.size());
        next_.resize(contacts.positions());
    }

    /// Asks the processor for the memory in which a key with this hash (`TextIndex::hashOf`) is
    /// looked for.
    void prefetch(std::uint64_t keyHash) const { chains_.prefetch(keyHash); }

    /// Adds the contact at this position to the group with the key, whose hash is given.
    void add(std::size_t position, std::string_view key, std::uint64_t keyHash)
    {
        const auto member = static_cast<std::uint32_t>(position);
        auto& chain = chains_.valueUnder(key, keyHash);
        const auto first = chain.size == 0 ? member : std::exchange(next_[chain.last], member);
        next_[member] = first;
        chain.last = member;
        ++chain.size;
        inDuplicates_ += chain.size == 2 ? 2 : chain.size > 2 ? 1 : 0;
    }

    /// Each element has the members `key` and `value`, the group's uids.
    Iterator begin() const { return {this, chains_.begin()}; }
    Iterator end() const { return {this, chains_.end()}; }

    std::size_t size() const { return chains_.size(); }

    /// How many people are in groups of two or more.
    std::size_t duplicates() const { return inDuplicates_; }

    /// The uids of the group with this key; nullopt if there is none.
    std::optional<Uids> find(std::string_view key) const
    {
        const auto* const chain = chains_.find(key);
        return chain == nullptr ? std::nullopt : std::optional(Uids(*this, *chain));
    }

    /// Whether the members' positions are positions in these contacts: they have not been cleared
    /// since the groups were formed.
    bool areOf(const Contacts& contacts) const { return contacts.has(uids_); }

    void clear() { *this = {}; }

private:
    Chains chains_;
    // By position of a contact: the position of the next one in the same group, and after the last
    // one that of the first.
    std::vector<std::uint32_t> next_;
    Contacts::Keys uids_;
    std::size_t inDuplicates_ = 0;
};

}  // namespace dunmora
