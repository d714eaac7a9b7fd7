#include "adapters/vcard/UidRegistry.h"

#include <xxhash.h>

#include <array>
#include <cstdio>

namespace dunmora {

namespace {

/// Returns a 128-bit hash of the content as hexadecimal digits. It has no key: an id must be the
/// same on every run.
std::string fingerprint(std::string_view content)
{
    const auto hash = XXH3_128bits(content.data(), content.size());
    std::array<char, 33> digits{};
    std::snprintf(digits.data(), digits.size(), "%016llx%016llx",
                  static_cast<unsigned long long>(hash.high64),
                  static_cast<unsigned long long>(hash.low64));
    return digits.data();
}

}  // namespace

std::uint64_t UidRegistry::announce(std::string_view ownUid) const
{
    const auto hash = TextIndex::hashOf(ownUid);
    index_.prefetch(hash);
    return hash;
}

std::string_view UidRegistry::assign(std::string_view ownUid, std::uint64_t hash,
                                     std::string_view card)
{
    if (!ownUid.empty() && take(ownUid, hash)) {
        return ownUid;
    }
    const auto base = ownUid.empty() ? "card-" + fingerprint(card)
                                     : std::string(ownUid) + "-" + fingerprint(card);
    auto& copies = copies_[base];
    while (true) {
        ++copies;
        const auto candidate = copies == 1 ? base : base + "-" + std::to_string(copies);
        if (const auto kept = keep(candidate); take(kept, TextIndex::hashOf(kept))) {
            return kept;
        }
    }
}

std::optional<std::size_t> UidRegistry::find(std::string_view uid) const
{
    const auto position =
        index_.find(uid, [&](std::size_t candidate) { return taken_[candidate] == uid; });
    return position == TextIndex::kNowhere ? std::nullopt : std::optional(position);
}

/// Records the id. Returns whether it was free.
bool UidRegistry::take(std::string_view uid, std::uint64_t hash)
{
    if (!index_.fits(taken_.size() + 1)) {
        rebuild(2 * taken_.size() + 1);
    }
    const auto isAt = [&](std::size_t position) { return taken_[position] == uid; };
    const auto append = [&] {
        taken_.push_back(uid);
        return taken_.size() - 1;
    };
    return index_.findOrAdd(hash, isAt, append).second;
}

void UidRegistry::reserve(std::size_t count)
{
    if (!index_.fits(count)) {
        rebuild(count);
    }
}

/// Rebuilds the index for `count` ids.
void UidRegistry::rebuild(std::size_t count)
{
    taken_.reserve(count);
    index_.reset(count);
    for (std::size_t i = 0; i < taken_.size(); ++i) {
        index_.add(taken_[i], i);
    }
}

std::string_view UidRegistry::keep(const std::string& text)
{
    auto* place = static_cast<char*>(memory_.allocate(text.size(), 1));
    text.copy(place, text.size());
    return {place, text.size()};
}

}  // namespace dunmora
