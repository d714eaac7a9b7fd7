#include "adapters/posix/ReadToEnd.h"

#include "adapters/posix/FileError.h"

#include <cerrno>
#include <cstring>
#include <utility>

namespace dunmora {

FileBytes readToEnd(const Descriptor& file, const std::filesystem::path& name, std::size_t capacity,
                    std::uintmax_t largest)
{
    return readToEnd(file, name, {FileBytes::allocate(capacity), capacity}, largest);
}

FileBytes readToEnd(const Descriptor& file, const std::filesystem::path& name,
                    UnfinishedBytes bytes, std::uintmax_t largest)
{
    auto& [memory, capacity, size] = bytes;
    while (true) {
        const auto count = readSome(file, memory.get() + size, capacity - size);
        if (count < 0) {
            throwFileError(name, kCannotBeRead, errno);
        }
        size += static_cast<std::size_t>(count);
        if (count == 0 || size > largest) {
            return {std::move(memory), size};
        }
        if (size == capacity) {
            auto larger = FileBytes::allocate(2 * capacity);
            std::memcpy(larger.get(), memory.get(), size);
            memory = std::move(larger);
            capacity *= 2;
        }
    }
}

}  // namespace dunmora
