#include "adapters/vcard/BookSize.h"

#include "adapters/posix/FileIdentity.h"
#include "platform/PlatformError.h"
#include "text/DisplayText.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <set>
#include <string>

namespace dunmora {

namespace {

constexpr auto kMebibyte = std::uintmax_t{1} << 20U;
constexpr auto kMostBytes = 4096 * kMebibyte;

/// Returns the size of the regular files.
std::uintmax_t sizeOf(const std::vector<std::filesystem::path>& files)
{
    std::uintmax_t size = 0;
    std::set<FileIdentity> counted;
    for (const auto& file : files) {
        struct stat status {};
        if (stat(file.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
            counted.insert(identityOf(status)).second) {
            size += static_cast<std::uintmax_t>(status.st_size);
        }
    }
    return size;
}

}  // namespace

std::uintmax_t largestBookSize(std::uintmax_t physicalMemory)
{
    return std::min(physicalMemory / 4, kMostBytes);
}

std::uintmax_t largestBookSize()
{
    const auto pages = sysconf(_SC_PHYS_PAGES);
    const auto pageSize = sysconf(_SC_PAGESIZE);
    if (pages <= 0 || pageSize <= 0) {
        return kMostBytes;
    }
    return largestBookSize(static_cast<std::uintmax_t>(pages) *
                           static_cast<std::uintmax_t>(pageSize));
}

void checkBookSize(const std::filesystem::path& book,
                   const std::vector<std::filesystem::path>& files, std::uintmax_t largest)
{
    const auto size = sizeOf(files);
    if (size <= largest) {
        return;
    }
    // One is rounded up and the other one down, so that they differ.
    const auto needed = (size + kMebibyte - 1) / kMebibyte;
    throw PlatformError(quotedPath(book) + " is too large: it has " + std::to_string(needed) +
                        " MiB, and on this computer Dunmora can read at most " +
                        std::to_string(largest / kMebibyte) + " MiB.");
}

}  // namespace dunmora
