#pragma once

#include <filesystem>
#include <map>
#include <set>

namespace dunmora {

/// Finds names for new files that neither an existing file nor another new one has.
/// Thread: any, one at a time; blocks on the disk. Errors: none.
class FreeNames final {
public:
    /// Takes the name if it is free; returns whether it was.
    bool take(const std::filesystem::path& path);

    /// Takes the name if it is free, else one like it in the same folder: "ann-2.vcf". Returns a
    /// name that no file can have, such as one in a folder that is gone, as it is.
    std::filesystem::path takeLike(const std::filesystem::path& path);

private:
    std::set<std::filesystem::path> taken_;
    // How many names like each one have been tried, so that thousands of files with one name do not
    // each try every number.
    std::map<std::filesystem::path, unsigned> tried_;
};

}  // namespace dunmora
