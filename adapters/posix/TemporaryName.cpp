#include "adapters/posix/TemporaryName.h"

#include <cerrno>
#include <charconv>
#include <cstddef>
#include <system_error>

namespace dunmora {

namespace {

/// The start of a file's name that its temporary name contains. Some file systems allow names of
/// little more than 140 bytes.
std::string_view cut(std::string_view fileName)
{
    constexpr std::size_t kMaximalSize = 80;
    if (fileName.size() <= kMaximalSize) {
        return fileName;
    }
    // Some file systems accept only UTF-8: do not split a character.
    auto size = kMaximalSize;
    while (size > 0 && (static_cast<unsigned char>(fileName[size]) & 0xC0U) == 0x80U) {
        --size;
    }
    return fileName.substr(0, size);
}

/// Removes a number and the hyphen after it from the text and stores the number.
template <typename Number>
bool takeNumber(std::string_view& text, Number& number)
{
    const auto* const end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || rest == end || *rest != '-') {
        return false;
    }
    text.remove_prefix(static_cast<std::size_t>(rest + 1 - text.data()));
    return true;
}

}  // namespace

std::optional<TemporaryName> TemporaryName::parsed(std::string_view name)
{
    if (!name.starts_with(kTemporaryPrefix)) {
        return std::nullopt;
    }
    name.remove_prefix(kTemporaryPrefix.size());
    TemporaryName result;
    unsigned number = 0;
    if (!takeNumber(name, result.newFile.device) || !takeNumber(name, result.newFile.inode) ||
        !takeNumber(name, number) || name.empty()) {
        return std::nullopt;
    }
    result.fileName = name;
    return result;
}

bool TemporaryName::belongsTo(std::string_view name) const
{
    return cut(name) == fileName;
}

std::filesystem::path temporaryPath(const std::filesystem::path& target, FileIdentity newFile,
                                    unsigned number)
{
    const auto name = target.filename().string();
    return target.parent_path() / (std::string(kTemporaryPrefix) + std::to_string(newFile.device) +
                                   "-" + std::to_string(newFile.inode) + "-" +
                                   std::to_string(number) + "-" + std::string(cut(name)));
}

bool useTemporaryPath(const std::filesystem::path& target, FileIdentity newFile,
                      const std::function<bool(const std::filesystem::path&)>& use)
{
    // So many leftovers of one file are avoided before giving up.
    constexpr unsigned kLastNumber = 1000;
    for (unsigned number = 1; number <= kLastNumber; ++number) {
        if (use(temporaryPath(target, newFile, number))) {
            return true;
        }
        if (errno != EEXIST) {
            break;
        }
    }
    return false;
}

}  // namespace dunmora
