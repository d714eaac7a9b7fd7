#include "adapters/posix/NewFile.h"

#include "adapters/posix/FileCopy.h"
#include "adapters/posix/FileError.h"
#include "adapters/posix/UnfinishedFile.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>

namespace dunmora {

void writeNewFile(const std::filesystem::path& path, const Pieces& content)
{
    UnfinishedFile file(path, O_WRONLY, S_IRUSR | S_IWUSR);
    if (!file.descriptor().isOpen()) {
        throwFileError(path, kCannotBeCreated, errno);
    }
    if (!writeAll(file.descriptor(), content) || !syncFile(file.descriptor())) {
        throwFileError(path, "cannot be written", errno);
    }
    const auto folder = path.has_parent_path() ? path.parent_path() : ".";
    if (!syncFolder(folder)) {
        throwFileError(path, "cannot be flushed to disk", errno);
    }
    file.finish();
}

}  // namespace dunmora
