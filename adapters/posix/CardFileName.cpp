#include "adapters/posix/CardFileName.h"

#include <system_error>

namespace dunmora {

bool isCardFileName(std::string_view name)
{
    return name.ends_with(".vcf") && !name.starts_with('.');
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
