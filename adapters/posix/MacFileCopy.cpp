#include "adapters/posix/FileCopy.h"

#include <copyfile.h>
#include <fcntl.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <utility>

namespace dunmora {

namespace {

/// Calls a function that writes a text of unknown length into a buffer and returns its length.
/// Errors: nullopt, and errno.
template <typename Call>
std::optional<std::string> textOf(const Call& call)
{
    const ssize_t size = call(nullptr, 0);
    if (size < 0) {
        return std::nullopt;
    }
    std::string text(static_cast<std::size_t>(size), '\0');
    const ssize_t length = size > 0 ? call(text.data(), text.size()) : 0;
    if (length < 0) {
        return std::nullopt;
    }
    text.resize(static_cast<std::size_t>(length));
    return text;
}

}  // namespace

std::optional<std::string> attributeOf(const Descriptor& file, const std::string& name)
{
    return textOf([&](char* buffer, std::size_t size) {
        return fgetxattr(file.number(), name.c_str(), buffer, size, 0, 0);
    });
}

bool setAttribute(const FileAttribute& attribute, const Descriptor& file)
{
    return fsetxattr(file.number(), attribute.name.c_str(), attribute.value.data(),
                     attribute.value.size(), 0, 0) == 0;
}

std::optional<std::vector<FileAttribute>> attributesOf(const Descriptor& file)
{
    const auto names = textOf(
        [&](char* buffer, std::size_t size) { return flistxattr(file.number(), buffer, size, 0); });
    if (!names) {
        return std::nullopt;
    }
    std::vector<FileAttribute> attributes;
    for (std::size_t begin = 0; begin < names->size();) {
        std::string name = names->c_str() + begin;
        begin += name.size() + 1;
        auto value = attributeOf(file, name);
        if (!value) {
            return std::nullopt;
        }
        attributes.push_back({std::move(name), std::move(*value)});
    }
    return attributes;
}

bool setAttributes(const std::vector<FileAttribute>& attributes, const Descriptor& file)
{
    // The attributes that the system gives every new file cannot be removed.
    return std::all_of(attributes.begin(), attributes.end(),
                       [&](const FileAttribute& each) { return setAttribute(each, file); });
}

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
