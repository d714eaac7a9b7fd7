#pragma once

#include "adapters/vcard/Property.h"

#include <cstddef>
#include <optional>
#include <string_view>

namespace dunmora {

/// The head of a line as nearly all lines have it: a name of letters, digits and hyphens, without a
/// group or blanks, and directly after it a ":" or ";". BEGIN and END are not names of that kind.
struct OrdinaryHead {
    PropertyKind kind;
    /// The offset of the ":" or ";".
    std::size_t nameEnd;
};

/// Recognizes such a head in one pass. Returns nothing for all other lines, which are to be read
/// with `delimiterOf` and `headOf`.
/// Thread: any. Errors: none.
std::optional<OrdinaryHead> ordinaryHeadOf(std::string_view line);

}  // namespace dunmora
