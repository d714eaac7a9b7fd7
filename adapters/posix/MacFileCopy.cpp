#include "adapters/posix/FileCopy.h"

#include <copyfile.h>
#include <fcntl.h>
#include <unistd.h>

namespace dunmora {

bool copyAttributes(const Descriptor& from, const Descriptor& to)
{
    // On macOS access control lists are not extended attributes. The attributes that the system
    // gives every new file cannot be removed.
    return fcopyfile(from.number(), to.number(), nullptr, COPYFILE_ACL | COPYFILE_XATTR) == 0;
}

bool syncFile(const Descriptor& file)
{
    // fsync does not flush the drive's cache. Not every file system supports F_FULLFSYNC.
    return uninterrupted([&] { return fcntl(file.number(), F_FULLFSYNC); }) == 0 ||
           uninterrupted([&] { return fsync(file.number()); }) == 0;
}

timespec contentTime(const struct stat& status)
{
    return status.st_mtimespec;
}

timespec changeTime(const struct stat& status)
{
    return status.st_ctimespec;
}

}  // namespace dunmora
