#pragma once

#include "platform/CardSource.h"
#include "review/CardKeys.h"
#include "review/KeptProperties.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <vector>

namespace dunmora {

/// Consecutive groups of a review, with what only one copy holds as their book has found it by
/// comparing the cards as they are stored.
///
/// Thread: as a standard container, and while an object reads cards, others may do so, too, on
/// other threads. Errors: none.
class ComparedGroups final {
public:
    using Names = std::vector<std::string>;

    /// Adds the next group if the book can compare the cards of these people. Returns whether it
    /// can.
    bool add(std::span<const std::string> uids, const CardSource& cards);

    std::size_t count() const { return namesOfGroup_.size(); }
    const KeptProperties& kept() const { return kept_; }
    /// The book or file of each row; none is null.
    const std::vector<const PersonSource*>& sources() const { return sources_; }
    /// For each group, the index in `names` of the names of the properties that were read. In
    /// `kept`, these come after one property that stands for all others.
    const std::vector<std::uint32_t>& namesOfGroup() const { return namesOfGroup_; }
    /// Each of them once.
    const std::vector<Names>& names() const { return names_; }

private:
    bool readDifferent(std::span<const std::string> uids, const CardSource& cards);
    std::uint32_t numberOf(const Names& names);

    KeptProperties kept_;
    std::vector<const PersonSource*> sources_;
    std::vector<std::uint32_t> namesOfGroup_;
    std::vector<Names> names_;
    std::map<Names, std::uint32_t> numbersOfNames_;
    // Reused, so that a group costs few allocations.
    std::vector<CardKeys> keys_;
    CardKeys keysOfShared_;
    CardDifferences differences_;
};

/// A part of a review's groups: runs of groups that the book can compare. Between two runs is one
/// group that it cannot.
using ComparedRuns = std::vector<ComparedGroups>;

/// The people of a group, by their uids.
using GroupUids = std::span<const std::string>;

/// Compares the groups, on at most `threads` threads, and returns them in their order, in parts of
/// at least `rowsInPart` rows as far as there are so many.
/// Thread: any; blocks until all is compared. Errors: none.
std::vector<ComparedRuns> compareGroups(std::span<const GroupUids> groups, const CardSource& cards,
                                        std::size_t threads, std::size_t rowsInPart);

}  // namespace dunmora
