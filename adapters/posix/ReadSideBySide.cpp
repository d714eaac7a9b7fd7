#include "adapters/posix/ReadSideBySide.h"

#include "adapters/posix/ReadAt.h"
#include "text/SideBySide.h"

#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <memory>

namespace dunmora {

namespace {

/// Makes the system provide all pages of the memory in one go. Without that, and where it cannot do
/// so, it provides each page when the first byte is written to it, which takes longer.
void providePages([[maybe_unused]] std::span<char> memory)
{
#ifdef MADV_POPULATE_WRITE
    void* begin = memory.data();
    auto size = memory.size();
    if (std::align(static_cast<std::size_t>(sysconf(_SC_PAGESIZE)), 1, begin, size) != nullptr) {
        madvise(begin, size, MADV_POPULATE_WRITE);
    }
#endif
}

}  // namespace

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
        if (!isWhole) {
            return;
        }
        const auto piece = place.subspan(begin, size);
        providePages(piece);
        if (readAt(file, name, piece, static_cast<std::size_t>(first) + begin) < size) {
            isWhole = false;
        }
    });
    const auto next = first + static_cast<off_t>(place.size());
    return isWhole && lseek(file.number(), next, SEEK_SET) == next;
}

}  // namespace dunmora
