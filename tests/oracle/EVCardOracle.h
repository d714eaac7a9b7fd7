#pragma once

#include "tests/oracle/OraclePerson.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora::test {

/// What GNOME's EVCard reads from the bytes of one card, or none when it is a group of people.
/// It splits every text at `;`; such texts are put together again.
std::optional<OraclePerson> readWithEVCard(const std::string& card);

/// The file brought from UTF-16 to UTF-8, with or without a byte-order mark; any other as it is.
std::string broughtToUtf8(std::string_view bytes);

}  // namespace dunmora::test
