#include "engine/ContactGroups.h"

#include "engine/MatchKey.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace dunmora {

std::string ContactGroups::Group::key() const
{
    std::string key;
    value.appendKey(key);
    return key;
}

void ContactGroups::Uids::appendKey(std::string& text) const
{
    appendMatchKey(text, groups_->contacts_.value(first_), groups_->choiceAt(first_));
}

ContactGroups::ContactGroups(const Contacts& contacts) : contacts_(contacts.contents())
{
    index_.reset(contacts.positions());
    next_.resize(contacts.positions());
    isFirst_.resize(contacts.positions());
}

void ContactGroups::add(std::size_t position, const MatchFieldChoice& choice, std::string_view key,
                        std::uint64_t keyHash)
{
    if (comparisons_.empty() || comparisons_.back().choice != choice) {
        comparisons_.push_back({position, choice});
    }
    const auto last =
        index_.exchange(keyHash, position, [&](std::size_t other) { return hasKey(other, key); });
    const auto member = static_cast<std::uint32_t>(position);
    if (last == TextIndex::kNowhere) {
        next_[position] = member;
        isFirst_[position] = true;
        ++size_;
    } else {
        const auto first = std::exchange(next_[last], member);
        next_[position] = first;
        inDuplicates_ += first == last ? 2 : 1;
    }
}

std::optional<ContactGroups::Uids> ContactGroups::find(std::string_view key) const
{
    const auto last = index_.find(key, [&](std::size_t other) { return hasKey(other, key); });
    return last == TextIndex::kNowhere ? std::nullopt : std::optional(Uids(*this, next_[last]));
}

const MatchFieldChoice& ContactGroups::choiceAt(std::size_t position) const
{
    const auto after = std::upper_bound(
        comparisons_.begin(), comparisons_.end(), position,
        [](std::size_t at, const Comparison& comparison) { return at < comparison.begin; });
    return std::prev(after)->choice;
}

bool ContactGroups::hasKey(std::size_t position, std::string_view key) const
{
    return hasMatchKey(contacts_.value(position), choiceAt(position), key);
}

}  // namespace dunmora
