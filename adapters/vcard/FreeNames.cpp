#include "adapters/vcard/FreeNames.h"

#include <sys/stat.h>

#include <cerrno>
#include <string>

namespace dunmora {

bool FreeNames::take(const std::filesystem::path& path)
{
    struct stat existing {};
    const bool exists = lstat(path.c_str(), &existing) == 0 || errno != ENOENT;
    return !exists && taken_.insert(path).second;
}

std::filesystem::path FreeNames::takeLike(const std::filesystem::path& path)
{
    auto name = path;
    for (unsigned number = 2; !take(name) && errno != ENOTDIR && errno != EACCES; ++number) {
        name = path.parent_path() /
               (path.stem().string() + "-" + std::to_string(number) + path.extension().string());
    }
    return name;
}

}  // namespace dunmora
