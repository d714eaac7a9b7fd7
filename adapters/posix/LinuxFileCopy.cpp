#include "adapters/posix/FileCopy.h"

#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace dunmora {

namespace {

/// The names of a file's extended attributes.
std::vector<std::string> attributeNames(const Descriptor& file)
{
    std::string list;
    ssize_t size = flistxattr(file.number(), nullptr, 0);
    while (size > 0) {
        list.resize(static_cast<std::size_t>(size));
        const auto got = flistxattr(file.number(), list.data(), list.size());
        if (got >= 0) {
            list.resize(static_cast<std::size_t>(got));
            break;
        }
        size = errno == ERANGE ? flistxattr(file.number(), nullptr, 0) : -1;
    }
    std::vector<std::string> names;
    for (std::size_t begin = 0; begin < list.size();) {
        names.emplace_back(list.c_str() + begin);
        begin += names.back().size() + 1;
    }
    return names;
}

/// The attribute's value; nullopt when it cannot be read.
std::optional<std::string> attribute(const Descriptor& file, const std::string& name)
{
    std::string value;
    const auto size = fgetxattr(file.number(), name.c_str(), nullptr, 0);
    if (size < 0) {
        return std::nullopt;
    }
    value.resize(static_cast<std::size_t>(size));
    if (fgetxattr(file.number(), name.c_str(), value.data(), value.size()) != size) {
        return std::nullopt;
    }
    return value;
}

}  // namespace

bool copyAttributes(const Descriptor& from, const Descriptor& to)
{
    const auto names = attributeNames(from);
    for (const auto& name : attributeNames(to)) {
        if (std::find(names.begin(), names.end(), name) == names.end() &&
            fremovexattr(to.number(), name.c_str()) != 0) {
            return false;
        }
    }
    return std::all_of(names.begin(), names.end(), [&](const std::string& name) {
        const auto value = attribute(from, name);
        return value &&
               (value == attribute(to, name) ||
                fsetxattr(to.number(), name.c_str(), value->data(), value->size(), 0) == 0);
    });
}

bool syncFile(const Descriptor& file)
{
    return fsync(file.number()) == 0;
}

timespec contentTime(const struct stat& status)
{
    return status.st_mtim;
}

timespec changeTime(const struct stat& status)
{
    return status.st_ctim;
}

}  // namespace dunmora
