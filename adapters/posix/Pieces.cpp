#include "adapters/posix/Pieces.h"

#include <algorithm>
#include <string>

namespace dunmora {

std::size_t sizeOf(const Pieces& content)
{
    std::size_t size = 0;
    for (const auto piece : content) {
        size += piece.size();
    }
    return size;
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
