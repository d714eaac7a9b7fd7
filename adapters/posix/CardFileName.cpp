#include "adapters/posix/CardFileName.h"

#include "text/Ascii.h"

#include <system_error>

namespace dunmora {

bool isCardFileName(std::string_view name)
{
    const auto dot = name.rfind('.');
    if (dot == std::string_view::npos || name.starts_with('.')) {
        return false;
    }
    const auto extension = name.substr(dot);
    return equalsIgnoringCase(extension, ".vcf") || equalsIgnoringCase(extension, ".vcard");
}

std::filesystem::path folderOf(const std::filesystem::path& file)
{
    return file.has_parent_path() ? file.parent_path() : std::filesystem::path(".");
}

bool wouldJoinBook(const std::filesystem::path& file, const std::filesystem::path& book)
{
    std::error_code error;
    return isCardFileName(file.filename().string()) && std::filesystem::is_directory(book, error) &&
           std::filesystem::equivalent(folderOf(file), book, error);
}

}  // namespace dunmora
