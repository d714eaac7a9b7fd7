#include "adapters/posix/FileCopy.h"

#include <copyfile.h>
#include <fcntl.h>
#include <unistd.h>

namespace dunmora {

bool copyAttributes(const Descriptor& from, const Descriptor& to)
{
    // Access control lists are no extended attributes here. What the system itself gives a new file
    // cannot be taken away.
    return fcopyfile(from.number(), to.number(), nullptr, COPYFILE_ACL | COPYFILE_XATTR) == 0;
}

bool syncFile(const Descriptor& file)
{
    // fsync stops at the disk's own memory. Not every file system knows the stronger call.
    return fcntl(file.number(), F_FULLFSYNC) == 0 || fsync(file.number()) == 0;
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
