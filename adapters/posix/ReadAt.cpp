#include "adapters/posix/ReadAt.h"

#include "adapters/posix/FileError.h"

#include <unistd.h>

#include <cerrno>

namespace dunmora {

std::size_t readAt(const Descriptor& file, const std::filesystem::path& name, std::span<char> place,
                   std::size_t position)
{
    std::size_t done = 0;
    while (done < place.size()) {
        const auto rest = place.subspan(done);
        const auto count = uninterrupted([&] {
            return pread(file.number(), rest.data(), rest.size(),
                         static_cast<off_t>(position + done));
        });
        if (count < 0) {
            throwFileError(name, kCannotBeRead, errno);
        }
        if (count == 0) {
            break;
        }
        done += static_cast<std::size_t>(count);
    }
    return done;
}

}  // namespace dunmora
