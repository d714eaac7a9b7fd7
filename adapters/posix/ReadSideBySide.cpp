#include "adapters/posix/ReadSideBySide.h"

#include "adapters/posix/ReadAt.h"
#include "text/SideBySide.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>

namespace dunmora {

bool readSideBySide(const Descriptor& file, const std::filesystem::path& name,
                    std::span<char> place, std::size_t pieceSize, std::size_t threads)
{
    const auto first = lseek(file.number(), 0, SEEK_CUR);
    if (first < 0) {
        return false;
    }
    std::atomic<bool> isWhole = true;
    runSideBySide((place.size() + pieceSize - 1) / pieceSize, threads, [&](std::size_t i) {
        const auto begin = i * pieceSize;
        const auto size = std::min(pieceSize, place.size() - begin);
        if (isWhole && readAt(file, name, place.subspan(begin, size),
                              static_cast<std::size_t>(first) + begin) < size) {
            isWhole = false;
        }
    });
    const auto next = first + static_cast<off_t>(place.size());
    return isWhole && lseek(file.number(), next, SEEK_SET) == next;
}

}  // namespace dunmora
