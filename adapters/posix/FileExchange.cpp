#include "adapters/posix/FileExchange.h"

#include <cerrno>

namespace dunmora {

bool isUnsupported(int error)
{
    return error == EINVAL || error == ENOSYS || error == ENOTSUP;
}

WriterWatch::WriterWatch(const Descriptor& file)
    : file_(file.number()), lease_(takeLease(file.number()))
{
}

}  // namespace dunmora
