#pragma once

#include "tests/oracle/OraclePerson.h"

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace dunmora::test {

/// Reads the people that ez-vcard found, by file (`folder@name`); empty when the file is missing.
/// Its lines are `F file`, `C uid, FN, family, given, nickname` and `T value, types, X-ABLabel`,
/// tab-separated.
std::map<std::string, std::vector<OraclePerson>> readGolden(const std::filesystem::path& file);

}  // namespace dunmora::test
