#include "adapters/posix/ReadToEnd.h"

#include "adapters/posix/FileError.h"

#include <cerrno>
#include <cstring>
#include <utility>

namespace dunmora {

FileBytes readToEnd(const Descriptor& file, const std::filesystem::path& name, std::size_t capacity,
                    std::uintmax_t largest)
{
    auto bytes = FileBytes::allocate(capacity);
    std::size_t size = 0;
    while (true) {
        const auto count = readSome(file, bytes.get() + size, capacity - size);
        if (count < 0) {
            throwFileError(name, kCannotBeRead, errno);
        }
        size += static_cast<std::size_t>(count);
        if (count == 0 || size > largest) {
            return {std::move(bytes), size};
        }
        if (size == capacity) {
            auto larger = FileBytes::allocate(2 * capacity);
            std::memcpy(larger.get(), bytes.get(), size);
            bytes = std::move(larger);
            capacity *= 2;
        }
    }
}

}  // namespace dunmora
