#include "adapters/vcard/FreeNames.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <string>
#include <string_view>

namespace dunmora {

namespace {

/// 0 when a file has this name, else the reason why none was found.
int searchError(const std::filesystem::path& path)
{
    struct stat existing {};
    return lstat(path.c_str(), &existing) == 0 ? 0 : errno;
}

/// The text without the last character (RFC 3629) that does not fit into so many bytes.
std::string_view cutTo(std::string_view text, std::size_t size)
{
    constexpr auto kIsInside = [](char c) {
        return (static_cast<unsigned char>(c) & 0xC0U) == 0x80;
    };
    size = std::min(size, text.size());
    while (size > 0 && size < text.size() && kIsInside(text[size])) {
        --size;
    }
    return text.substr(0, size);
}

/// "ann-2.vcf" for "ann.vcf"
std::filesystem::path numbered(const std::filesystem::path& path, unsigned number)
{
    // Of the file systems that people use; others report a name that is too long.
    constexpr std::size_t kLongestName = 255;
    const auto stem = path.stem().string();
    const auto ending = "-" + std::to_string(number) + path.extension().string();
    const auto space = kLongestName - std::min(kLongestName, ending.size());
    return path.parent_path() / (std::string(cutTo(stem, space)) + ending);
}

}  // namespace

bool FreeNames::take(const std::filesystem::path& path)
{
    return searchError(path) == ENOENT && taken_.insert(path).second;
}

std::filesystem::path FreeNames::takeLike(const std::filesystem::path& path)
{
    auto& tried = tried_[path];
    while (true) {
        ++tried;
        auto name = tried == 1 ? path : numbered(path, tried);
        const int error = searchError(name);
        const bool isUsed = error == 0 || (error == ENOENT && !taken_.insert(name).second);
        if (!isUsed) {
            return name;
        }
    }
}

}  // namespace dunmora
