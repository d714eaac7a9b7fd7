#include "adapters/posix/ReadSideBySide.h"

#include "adapters/posix/FileError.h"
#include "adapters/posix/SideBySide.h"

#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>

namespace dunmora {

namespace {

/// Fills the place from this position of the file. Returns whether the file was long enough.
bool readAt(const Descriptor& file, const std::filesystem::path& name, std::span<char> place,
            off_t position)
{
    std::size_t done = 0;
    while (done < place.size()) {
        const auto rest = place.subspan(done);
        const auto count = uninterrupted([&] {
            return pread(file.number(), rest.data(), rest.size(),
                         position + static_cast<off_t>(done));
        });
        if (count < 0) {
            throwFileError(name, kCannotBeRead, errno);
        }
        if (count == 0) {
            return false;
        }
        done += static_cast<std::size_t>(count);
    }
    return true;
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
        if (isWhole &&
            !readAt(file, name, place.subspan(begin, size), first + static_cast<off_t>(begin))) {
            isWhole = false;
        }
    });
    const auto next = first + static_cast<off_t>(place.size());
    return isWhole && lseek(file.number(), next, SEEK_SET) == next;
}

}  // namespace dunmora
