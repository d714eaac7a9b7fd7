#include "adapters/posix/FileBytes.h"

#include <utility>

namespace dunmora {

FileBytes::Memory FileBytes::allocate(std::size_t size)
{
    return std::make_unique_for_overwrite<Memory::element_type[]>(size);  // NOLINT(*-c-arrays)
}

FileBytes::FileBytes(Memory memory, std::size_t size)
    : memory_(std::move(memory)), bytes_(memory_.get(), size)
{
}

FileBytes FileBytes::keptElsewhere(std::string_view bytes)
{
    FileBytes result;
    result.bytes_ = bytes;
    return result;
}

}  // namespace dunmora
