#pragma once

#include "tests/oracle/OraclePerson.h"

#include <filesystem>
#include <map>
#include <string>
#include <vector>

namespace dunmora::test {

/// File (`folder@name`) to the people that ez-vcard read from it; empty when there is no such file.
/// Its lines are `F file`, `C uid, FN, family, given, nickname` and `T value, types, X-ABLabel`,
/// tab-separated.
std::map<std::string, std::vector<OraclePerson>> readGolden(const std::filesystem::path& file);

}  // namespace dunmora::test
