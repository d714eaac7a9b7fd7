#include "adapters/vcard/UidRegistry.h"

#include <xxhash.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdio>

namespace dunmora {

namespace {

/// Returns a 128-bit hash of the content as hexadecimal digits.
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

std::string_view UidRegistry::assign(std::string_view ownUid, std::string_view card)
{
    if (!ownUid.empty() && take(ownUid)) {
        return ownUid;
    }
    const auto base = ownUid.empty() ? "card-" + fingerprint(card)
                                     : std::string(ownUid) + "-" + fingerprint(card);
    auto& copies = copies_[base];
    while (true) {
        ++copies;
        const auto candidate = copies == 1 ? base : base + "-" + std::to_string(copies);
        if (const auto kept = keep(candidate); take(kept)) {
            return kept;
        }
    }
}

/// Records the id. Returns whether it was free.
bool UidRegistry::take(std::string_view uid)
{
    if (slots_.size() < 2 * (taken_.size() + 1)) {
        rebuild(2 * taken_.size() + 1);
    }
    const auto hash = XXH3_64bits(uid.data(), uid.size());
    auto* slot = slotOf(uid, hash);
    if (slot->id != 0) {
        return false;
    }
    taken_.push_back(uid);
    *slot = {static_cast<std::uint32_t>(taken_.size()), static_cast<std::uint32_t>(hash >> 32U)};
    return true;
}

/// Returns the slot of the id, or the free slot for it.
UidRegistry::Slot* UidRegistry::slotOf(std::string_view uid, std::uint64_t hash)
{
    const auto mask = slots_.size() - 1;
    auto position = hash & mask;
    while (slots_[position].id != 0 &&
           (slots_[position].hash != hash >> 32U || taken_[slots_[position].id - 1] != uid)) {
        position = (position + 1) & mask;
    }
    return &slots_[position];
}

void UidRegistry::reserve(std::size_t count)
{
    if (slots_.size() < 2 * count) {
        rebuild(count);
    }
}

/// Rebuilds the table for `count` ids.
void UidRegistry::rebuild(std::size_t count)
{
    taken_.reserve(count);
    slots_.assign(std::bit_ceil(std::max<std::size_t>(2 * count, 16)), Slot());
    for (std::size_t i = 0; i < taken_.size(); ++i) {
        const auto hash = XXH3_64bits(taken_[i].data(), taken_[i].size());
        *slotOf(taken_[i], hash) = {static_cast<std::uint32_t>(i + 1),
                                    static_cast<std::uint32_t>(hash >> 32U)};
    }
}

std::string_view UidRegistry::keep(const std::string& text)
{
    auto* place = static_cast<char*>(memory_.allocate(text.size(), 1));
    text.copy(place, text.size());
    return {place, text.size()};
}

}  // namespace dunmora
