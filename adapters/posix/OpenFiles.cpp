#include "adapters/posix/OpenFiles.h"

#include "adapters/posix/Descriptor.h"

namespace dunmora {

OpenFiles openFilesFor(std::size_t changes)
{
    // The old file, the new one, the old one again when it is checked, and perhaps a folder.
    constexpr std::size_t kFilesPerChange = 4;
    // For everything else that the program has open.
    constexpr std::size_t kReserve = 128;
    return canOpenFiles(kReserve + changes * kFilesPerChange) ? OpenFiles::Keep : OpenFiles::Close;
}

}  // namespace dunmora
