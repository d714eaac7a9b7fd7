#pragma once

#include <string>

namespace dunmora {

struct CardProperty;

/// The property's value as it is compared with that of an equally named property: two values that
/// mean the same have the same text. Ignores the case of the scheme and the host of addresses on
/// the Internet, white space in addresses, notes and formatted names, and how a date is written.
/// A binary value is its size and its keyed hash.
/// Thread: any. Errors: none.
std::string comparedText(const CardProperty& property);

}  // namespace dunmora
