#pragma once

#include "text/TextIndex.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace dunmora {

/// Looks for uids in a list, which must outlive the set. Hashed: one by one, tens of thousands
/// would take minutes.
///
/// Thread: any, several at once.
class UidSet final {
public:
    explicit UidSet(std::span<const std::string> uids) : uids_(uids)
    {
        index_.reset(uids.size());
        for (std::size_t i = 0; i < uids.size(); ++i) {
            index_.findOrAdd(
                uids[i], [&](std::size_t other) { return uids[other] == uids[i]; },
                [i] { return i; });
        }
    }

    /// Asks the processor for the memory in which a uid with this hash (`TextIndex::hashOf`) is
    /// looked for.
    void prefetch(std::uint64_t hash) const { index_.prefetch(hash); }

    bool contains(std::string_view uid, std::uint64_t hash) const
    {
        return index_.find(hash, [&](std::size_t i) { return uids_[i] == uid; }) !=
               TextIndex::kNowhere;
    }

private:
    std::span<const std::string> uids_;
    TextIndex index_;
};

}  // namespace dunmora
