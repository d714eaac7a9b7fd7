#include "adapters/vcard/UidRegistry.h"

#include <xxhash.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstdio>

namespace dunmora {

namespace {

/// 128 bits of the content as hexadecimal digits.
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

std::string_view UidRegistry::give(std::string_view ownUid, std::string_view card)
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

/// Notes the id. Returns whether nobody had it.
bool UidRegistry::take(std::string_view uid)
{
    if (slots_.size() < 2 * (given_.size() + 1)) {
        layOut(2 * given_.size() + 1);
    }
    const auto hash = XXH3_64bits(uid.data(), uid.size());
    auto* slot = slotOf(uid, hash);
    if (slot->id != 0) {
        return false;
    }
    given_.push_back(uid);
    *slot = {static_cast<std::uint32_t>(given_.size()), static_cast<std::uint32_t>(hash >> 32U)};
    return true;
}

/// The slot of the id, or the free one where it belongs.
UidRegistry::Slot* UidRegistry::slotOf(std::string_view uid, std::uint64_t hash)
{
    const auto mask = slots_.size() - 1;
    auto position = hash & mask;
    while (slots_[position].id != 0 &&
           (slots_[position].hash != hash >> 32U || given_[slots_[position].id - 1] != uid)) {
        position = (position + 1) & mask;
    }
    return &slots_[position];
}

void UidRegistry::reserve(std::size_t count)
{
    if (slots_.size() < 2 * count) {
        layOut(count);
    }
}

/// Lays the slots anew with room for so many ids.
void UidRegistry::layOut(std::size_t count)
{
    given_.reserve(count);
    slots_.assign(std::bit_ceil(std::max<std::size_t>(2 * count, 16)), Slot());
    for (std::size_t i = 0; i < given_.size(); ++i) {
        const auto hash = XXH3_64bits(given_[i].data(), given_[i].size());
        *slotOf(given_[i], hash) = {static_cast<std::uint32_t>(i + 1),
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
