#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace dunmora {

/// Lists the folder's `*.vcf` files, except hidden ones, in file-name order. Adds a sentence to
/// `remarks` for each name that is skipped because it is not a file.
/// Thread: any; blocks on the disk. Errors: PlatformError when the folder cannot be read.
std::vector<std::filesystem::path> cardFilesIn(const std::filesystem::path& folder,
                                               std::vector<std::string>& remarks);

}  // namespace dunmora
