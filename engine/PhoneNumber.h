#pragma once

#include "platform/Person.h"

#include <string_view>

namespace dunmora {

/// The value of the first entry whose label contains `word`, whatever its case, or "" when none
/// does or there is no list. An entry without a label fits every word. The value is as stored.
///
/// `word` is one of "home", "work" and "mobile", in lower case.
std::string_view PhoneNumber(const OptionalPhones& phones, std::string_view word);

}  // namespace dunmora
