#pragma once

#include <filesystem>
#include <set>

namespace dunmora {

/// Finds names for new files that neither an existing file nor another new one has.
/// Thread: any, one at a time; blocks on the disk. Errors: none.
class FreeNames final {
public:
    /// Takes the name if it is free; returns whether it was.
    bool take(const std::filesystem::path& path);

    /// Takes the name if it is free, else one like it in the same folder: "ann-2.vcf".
    std::filesystem::path takeLike(const std::filesystem::path& path);

private:
    std::set<std::filesystem::path> taken_;
};

}  // namespace dunmora
