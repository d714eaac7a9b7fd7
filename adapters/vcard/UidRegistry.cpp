#include "adapters/vcard/UidRegistry.h"

#include <xxhash.h>

#include <array>
#include <cstdio>
#include <cstring>

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
    if (!ownUid.empty() && given_.insert(ownUid).second) {
        return ownUid;
    }
    const auto base = ownUid.empty() ? "card-" + fingerprint(card)
                                     : std::string(ownUid) + "-" + fingerprint(card);
    auto& copies = copies_[base];
    while (true) {
        ++copies;
        const auto candidate = copies == 1 ? base : base + "-" + std::to_string(copies);
        if (!given_.contains(candidate)) {
            return *given_.insert(keep(candidate)).first;
        }
    }
}

std::string_view UidRegistry::keep(const std::string& text)
{
    auto* place = static_cast<char*>(memory_.allocate(text.size(), 1));
    std::memcpy(place, text.data(), text.size());
    return {place, text.size()};
}

}  // namespace dunmora
