#pragma once

#include "text/SipHash.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace dunmora {

/// A new key from the system's source of random numbers.
/// Thread: any. Errors: what std::random_device throws.
SipKey randomSipKey();

/// The hash for tables of texts that others chose: nobody can craft an address book whose texts
/// share a slot and make every search a walk through all of them. The key is drawn once per
/// process, so the hash must not affect anything that is shown or stored.
/// Thread: any. Errors: as `randomSipKey`, on the first call.
std::uint64_t textHash(std::string_view text);

/// The hash for standard containers whose keys are texts.
struct TextHash {
    std::size_t operator()(std::string_view text) const
    {
        return static_cast<std::size_t>(textHash(text));
    }
};

}  // namespace dunmora
