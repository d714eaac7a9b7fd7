#pragma once

#include <cstddef>
#include <string>

namespace dunmora {

struct CardProperty;

/// Components of a property that are read as if they were empty: those from `begin` up to `end`.
struct OmittedComponents {
    std::size_t begin = 0;
    std::size_t end = 0;
};

/// Appends the property's value as it is compared with that of an equally named property: two
/// values that mean the same have the same text. Ignores the case of the scheme and the host of
/// addresses on the Internet, white space in addresses, notes and formatted names, and how a date
/// is written. A binary value is its size and its keyed hash.
/// Thread: any. Errors: none.
void appendComparedText(std::string& text, const CardProperty& property,
                        OmittedComponents omitted = {});

}  // namespace dunmora
