#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace dunmora {

/// A sentence about a file with more hard links than the book has names for it: a deletion replaces
/// the file under the book's names, so the others keep the removed people. Empty when there are no
/// others. `names` are those under which the book reaches the file.
/// Thread: any; blocks on the disk. Errors: none.
std::string hardLinkRemark(const std::vector<std::filesystem::path>& names, std::uintmax_t links);

}  // namespace dunmora
