#include "adapters/posix/Pieces.h"

#include <algorithm>
#include <string>
#include <utility>

namespace dunmora {

std::size_t sizeOf(const Pieces& content)
{
    std::size_t size = 0;
    for (const auto piece : content) {
        size += piece.size();
    }
    return size;
}

FileBytes joined(const Pieces& content)
{
    const auto size = sizeOf(content);
    auto memory = FileBytes::allocate(size);
    auto* end = memory.get();
    for (const auto piece : content) {
        end = std::copy(piece.begin(), piece.end(), end);
    }
    return {std::move(memory), size};
}

bool writeAll(const Descriptor& file, const Pieces& content)
{
    constexpr std::size_t kBufferSize = std::size_t(1) << 20U;
    std::string buffer;
    buffer.reserve(std::min(sizeOf(content), kBufferSize));
    for (const auto piece : content) {
        if (buffer.size() + piece.size() > kBufferSize) {
            if (!writeAll(file, buffer)) {
                return false;
            }
            buffer.clear();
        }
        if (piece.size() > kBufferSize) {
            if (!writeAll(file, piece)) {
                return false;
            }
        } else {
            buffer += piece;
        }
    }
    return writeAll(file, buffer);
}

}  // namespace dunmora
