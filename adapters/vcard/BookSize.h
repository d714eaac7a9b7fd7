#pragma once

#include <cstdint>
#include <filesystem>
#include <vector>

namespace dunmora {

/// The size of the largest address book that is read on a computer with this much memory: a quarter
/// of it, because a review takes about four times the size of the book, and never more than 4 GiB.
/// In bytes.
std::uintmax_t largestBookSize(std::uintmax_t physicalMemory);

/// The size of the largest address book that is read on this computer.
std::uintmax_t largestBookSize();

/// Refuses a book whose files, each counted once, are together larger than this.
/// Thread: any; blocks on the disk. Errors: PlatformError with the book, its size and the limit.
/// Files that cannot be read are not counted: reading them reports why.
void checkBookSize(const std::filesystem::path& book,
                   const std::vector<std::filesystem::path>& files, std::uintmax_t largest);

}  // namespace dunmora
