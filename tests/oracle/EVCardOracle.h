#pragma once

#include "tests/oracle/OraclePerson.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora::test {

/// Reads one card with GNOME's EVCard. Returns nothing when the card is a group. EVCard splits
/// every text at `;`; such texts are joined again.
std::optional<OraclePerson> readWithEVCard(const std::string& card);

/// Converts UTF-16, with or without a byte-order mark, to UTF-8; returns other bytes unchanged.
std::string convertedToUtf8(std::string_view bytes);

}  // namespace dunmora::test
