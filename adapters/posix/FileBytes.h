#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

namespace dunmora {

/// The bytes of a file, read once and then constant.
/// Thread: any, several at once. Errors: std::bad_alloc from `allocate`.
class FileBytes final {
public:
    /// Uninitialised memory, which std::string and std::vector cannot provide.
    using Memory = std::unique_ptr<char[]>;  // NOLINT(modernize-avoid-c-arrays): sized at run time
    static Memory allocate(std::size_t size);

    FileBytes() = default;
    /// Takes the first `size` bytes of `memory`.
    FileBytes(Memory memory, std::size_t size);

    /// Bytes that somebody else keeps, and that must outlive the object.
    static FileBytes keptElsewhere(std::string_view bytes);

    std::string_view view() const { return bytes_; }

private:
    // Nothing when somebody else keeps the bytes.
    Memory memory_;
    std::string_view bytes_;
};

}  // namespace dunmora
