#include "review/ComparedGroups.h"

#include "platform/PersonCard.h"
#include "text/SideBySide.h"

#include <algorithm>
#include <utility>

namespace dunmora {

namespace {

/// What all cards of a group share is looked for in groups of at most this many cards, with at most
/// this many properties each.
constexpr std::size_t kMostSharing = 8;
constexpr std::size_t kMostCompared = 32;

/// The properties that all of these cards have, unless there are so many that it would take long.
PersonCard sharedBy(std::span<const std::vector<CardProperty>> cards)
{
    PersonCard shared;
    const auto isTooLong = [](const std::vector<CardProperty>& properties) {
        return properties.size() > kMostCompared;
    };
    if (std::any_of(cards.begin(), cards.end(), isTooLong)) {
        return shared;
    }
    for (const auto& property : cards.front()) {
        const auto has = [&](const std::vector<CardProperty>& properties) {
            return std::find(properties.begin(), properties.end(), property) != properties.end();
        };
        if (std::all_of(cards.begin() + 1, cards.end(), has)) {
            shared.properties.push_back(property);
        }
    }
    return shared;
}

/// The number of groups at the beginning that have at least this many rows in all.
std::size_t groupsWithRows(std::span<const GroupUids> groups, std::size_t rows)
{
    std::size_t count = 0;
    for (std::size_t found = 0; count < groups.size() && found < rows; ++count) {
        found += groups[count].size();
    }
    return count;
}

ComparedRuns compare(std::span<const GroupUids> groups, const CardSource& cards)
{
    ComparedRuns runs(1);
    for (const auto& uids : groups) {
        if (!runs.back().add(uids, cards)) {
            runs.emplace_back();
        }
    }
    return runs;
}

}  // namespace

bool ComparedGroups::add(std::span<const std::string> uids, const CardSource& cards)
{
    if (!cards.compareStored(uids, differences_)) {
        return false;
    }
    restrictToCompared(differences_.names);
    if (differences_.names.empty()) {
        kept_.addGroupOfEqual(uids.size());
    } else if (!readDifferent(uids, cards)) {
        return false;
    }
    sources_.insert(sources_.end(), differences_.sources.begin(), differences_.sources.end());
    namesOfGroup_.push_back(numberOf(differences_.names));
    return true;
}

/// Reads only the properties in which the cards of the group differ.
bool ComparedGroups::readDifferent(std::span<const std::string> uids, const CardSource& cards)
{
    keys_.resize(std::max(keys_.size(), uids.size()));
    const bool mayShare = uids.size() <= kMostSharing;
    std::vector<std::vector<CardProperty>> read;
    for (std::size_t i = 0; i < uids.size(); ++i) {
        auto properties = cards.propertiesNamed(uids[i], differences_.names);
        if (!properties) {
            return false;
        }
        if (mayShare) {
            read.push_back(*std::move(properties));
        } else {
            keys_[i].readBesidesShared(*properties, {}, {});
        }
    }
    if (mayShare) {
        const auto shared = sharedBy(read);
        keysOfShared_.read(shared);
        for (std::size_t i = 0; i < uids.size(); ++i) {
            keys_[i].readBesidesShared(read[i], shared, keysOfShared_);
        }
    }
    kept_.addGroup(std::span(keys_).first(uids.size()));
    return true;
}

std::uint32_t ComparedGroups::numberOf(const Names& names)
{
    const auto [found, isNew] =
        numbersOfNames_.try_emplace(names, static_cast<std::uint32_t>(names_.size()));
    if (isNew) {
        names_.push_back(names);
    }
    return found->second;
}

std::vector<ComparedRuns> compareGroups(std::span<const GroupUids> groups, const CardSource& cards,
                                        std::size_t threads, std::size_t rowsInPart)
{
    std::vector<std::span<const GroupUids>> parts;
    while (!groups.empty()) {
        const auto count = groupsWithRows(groups, rowsInPart);
        parts.push_back(groups.first(count));
        groups = groups.subspan(count);
    }
    std::vector<ComparedRuns> compared(parts.size());
    runSideBySide(parts.size(), threads,
                  [&](std::size_t i) { compared[i] = compare(parts[i], cards); });
    return compared;
}

}  // namespace dunmora
