#pragma once

#include <filesystem>
#include <string_view>

namespace dunmora {

/// Whether a file with this name, in a folder that is an address book, is one of its card files:
/// "*.vcf" or "*.vcard", in any case, unless it is hidden.
bool isCardFileName(std::string_view name);

/// The folder of a file, "." for a name alone.
std::filesystem::path folderOf(const std::filesystem::path& file);

/// Whether `book` is a folder that would contain the new file as one of its card files.
/// Thread: any; blocks on the disk. Errors: none.
bool wouldJoinBook(const std::filesystem::path& file, const std::filesystem::path& book);

}  // namespace dunmora
