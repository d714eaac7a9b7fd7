#pragma once

#include "base/ContactFields.h"
#include "engine/ContactRecord.h"
#include "engine/OrderedDictionary.h"
#include "text/TextIndex.h"

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

/// Groups of people by match key, in the order in which their first members were added: a
/// dictionary from each key to the uids of the people who have it.
///
/// A group is a chain of positions in the dictionary of the contacts, four bytes a person, and its
/// key is made of its first member's texts whenever somebody asks for it: of a million people most
/// have no duplicate. The groups list the same uids whatever becomes of the contacts.
///
/// Thread: as a standard container.
class ContactGroups final {
public:
    using Contacts = OrderedDictionary<ContactRecord>;

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

            Iterator(const ContactGroups* groups, std::uint32_t position)
                : groups_(groups), position_(position)
            {
            }

            /// Where the contacts had the person when the group was formed.
            std::size_t position() const { return position_; }

            std::string_view operator*() const { return groups_->contacts_.key(position_); }
            Iterator& operator++()
            {
                const auto next = groups_->next_[position_];
                // The first one comes after the last.
                position_ = next > position_ ? next : kEnd;
                return *this;
            }
            bool operator==(const Iterator& other) const { return position_ == other.position_; }

        private:
            const ContactGroups* groups_;
            std::uint32_t position_;
        };

        Uids(const ContactGroups& groups, std::uint32_t first) : groups_(&groups), first_(first) {}

        /// Whether the group has two or more members.
        bool areSeveral() const { return groups_->next_[first_] != first_; }
        /// Counts the members, one after another.
        std::size_t size() const { return static_cast<std::size_t>(std::distance(begin(), end())); }
        /// Appends the group's key to `text`.
        void appendKey(std::string& text) const;
        Iterator begin() const { return {groups_, first_}; }
        Iterator end() const { return {groups_, kEnd}; }

    private:
        const ContactGroups* groups_;
        std::uint32_t first_;
    };

    /// A view of a group.
    struct Group {
        Uids value;

        std::string key() const;
    };

    class Iterator final {
    public:
        using iterator_category = std::input_iterator_tag;
        using value_type = Group;
        using difference_type = std::ptrdiff_t;
        using pointer = const Group*;
        using reference = Group;

        Iterator(const ContactGroups* groups, std::size_t position)
            : groups_(groups), position_(position)
        {
            skipOthers();
        }

        Group operator*() const { return {{*groups_, static_cast<std::uint32_t>(position_)}}; }
        Iterator& operator++()
        {
            ++position_;
            skipOthers();
            return *this;
        }
        bool operator==(const Iterator& other) const { return position_ == other.position_; }

    private:
        /// Goes to the next first member of a group.
        void skipOthers()
        {
            while (position_ < groups_->isFirst_.size() && !groups_->isFirst_[position_]) {
                ++position_;
            }
        }

        const ContactGroups* groups_;
        std::size_t position_;
    };

    /// No groups.
    ContactGroups() = default;

    /// No groups yet, with space for as many as there are contacts.
    explicit ContactGroups(const Contacts& contacts);

    /// Asks the processor for the memory in which a key with this hash (`TextIndex::hashOf`) is
    /// looked for.
    void prefetch(std::uint64_t keyHash) const { index_.prefetch(keyHash); }

    /// Adds the contact at this position, which comes after those of all others added, to the group
    /// with the key. The key is the contact's `matchKey` for this choice, its hash is given.
    void add(std::size_t position, const MatchFieldChoice& choice, std::string_view key,
             std::uint64_t keyHash);

    /// Each element has the members `key()` and `value`, the group's uids.
    Iterator begin() const { return {this, 0}; }
    Iterator end() const { return {this, isFirst_.size()}; }

    std::size_t size() const { return size_; }

    /// How many people are in groups of two or more.
    std::size_t duplicates() const { return inDuplicates_; }

    /// The uids of the group with this key; nullopt if there is none.
    std::optional<Uids> find(std::string_view key) const;

    /// Whether the members' positions are positions in these contacts: they have not been cleared
    /// since the groups were formed.
    bool areOf(const Contacts& contacts) const { return contacts.has(contacts_); }

    void clear() { *this = {}; }

private:
    /// By which fields the contacts from a position on were compared.
    struct Comparison {
        std::size_t begin;
        MatchFieldChoice choice;
    };

    static constexpr std::uint32_t kEnd = 0xFFFF'FFFF;

    const MatchFieldChoice& choiceAt(std::size_t position) const;
    bool hasKey(std::size_t position, std::string_view key) const;

    // Finds the last member of a group by the key.
    TextIndex index_;
    // By position of a contact: the position of the next one in the same group, and after the last
    // one that of the first.
    std::vector<std::uint32_t> next_;
    // By position of a contact: whether it is the first one of its group.
    std::vector<bool> isFirst_;
    Contacts::Contents contacts_;
    // Usually one: somebody may choose other fields during a search.
    std::vector<Comparison> comparisons_;
    std::size_t size_ = 0;
    std::size_t inDuplicates_ = 0;
};

}  // namespace dunmora
