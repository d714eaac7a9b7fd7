#include "adapters/posix/FileExchange.h"

#include <sys/mount.h>

#include <cstdio>
#include <string_view>

namespace dunmora {

bool exchangeFiles(const std::filesystem::path& one, const std::filesystem::path& other)
{
    return renamex_np(one.c_str(), other.c_str(), RENAME_SWAP) == 0;
}

bool renameToNewName(const std::filesystem::path& from, const std::filesystem::path& to)
{
    return renamex_np(from.c_str(), to.c_str(), RENAME_EXCL) == 0;
}

bool hasLastingInode(const std::filesystem::path& path)
{
    struct statfs system {};
    if (statfs(path.c_str(), &system) != 0) {
        return false;
    }
    const std::string_view type = system.f_fstypename;
    return type == "apfs" || type == "hfs";
}

WriterWatch::Lease WriterWatch::takeLease(int /*file*/)
{
    return Lease::Unavailable;
}

bool WriterWatch::hasWriter() const
{
    return lease_ == Lease::Refused;
}

}  // namespace dunmora
