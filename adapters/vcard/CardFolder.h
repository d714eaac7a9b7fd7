#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace dunmora {

/// Lists the files of the folder that `isCardFileName` recognizes, in file-name order. Adds a
/// sentence to `remarks` for each name that is skipped because it is not a file.
/// Thread: any; blocks on the disk. Errors: PlatformError when the folder cannot be read.
std::vector<std::filesystem::path> cardFilesIn(const std::filesystem::path& folder,
                                               std::vector<std::string>& remarks);

/// A remark about a folder without card files. It names a few of its subfolders, or of theirs, that
/// have some; only so many are searched that the user does not wait.
/// Thread: any; blocks on the disk. Errors: none.
std::string remarkAboutNoCardFiles(const std::filesystem::path& folder);

}  // namespace dunmora
