#include "adapters/posix/FileCopy.h"

#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace dunmora {

namespace {

/// Calls a function that writes a text of unknown length into a buffer and returns its length, as
/// flistxattr(2) does, and returns the text. Errors: nullopt, and errno.
template <typename Call>
std::optional<std::string> textOf(const Call& call)
{
    constexpr int kMaximalTries = 10;
    for (int tries = 0; tries < kMaximalTries; ++tries) {
        const ssize_t size = call(nullptr, 0);
        if (size <= 0) {
            return size < 0 ? std::nullopt : std::optional(std::string());
        }
        std::string text(static_cast<std::size_t>(size), '\0');
        const ssize_t length = call(text.data(), text.size());
        if (length >= 0) {
            text.resize(static_cast<std::size_t>(length));
            return text;
        }
        // ERANGE: the text has grown between the two calls.
        if (errno != ERANGE) {
            break;
        }
    }
    return std::nullopt;
}

/// The names of a file's extended attributes. Errors: nullopt, and errno.
std::optional<std::vector<std::string>> attributeNames(const Descriptor& file)
{
    const auto list = textOf(
        [&](char* buffer, std::size_t size) { return flistxattr(file.number(), buffer, size); });
    std::vector<std::string> names;
    if (!list) {
        // ENOTSUP: the file system has no attributes. After any other error there may be some.
        return errno == ENOTSUP ? std::optional(names) : std::nullopt;
    }
    for (std::size_t begin = 0; begin < list->size();) {
        names.emplace_back(list->c_str() + begin);
        begin += names.back().size() + 1;
    }
    return names;
}

}  // namespace

std::optional<std::string> attributeOf(const Descriptor& file, const std::string& name)
{
    return textOf([&](char* buffer, std::size_t size) {
        return fgetxattr(file.number(), name.c_str(), buffer, size);
    });
}

bool setAttribute(const FileAttribute& attribute, const Descriptor& file)
{
    return fsetxattr(file.number(), attribute.name.c_str(), attribute.value.data(),
                     attribute.value.size(), 0) == 0;
}

std::optional<std::vector<FileAttribute>> attributesOf(const Descriptor& file)
{
    const auto names = attributeNames(file);
    if (!names) {
        return std::nullopt;
    }
    std::vector<FileAttribute> attributes;
    for (const auto& name : *names) {
        auto value = attributeOf(file, name);
        if (!value) {
            return std::nullopt;
        }
        attributes.push_back({name, std::move(*value)});
    }
    return attributes;
}

bool setAttributes(const std::vector<FileAttribute>& attributes, const Descriptor& file)
{
    const auto existing = attributeNames(file);
    if (!existing) {
        return false;
    }
    for (const auto& name : *existing) {
        if (std::none_of(attributes.begin(), attributes.end(),
                         [&](const FileAttribute& each) { return each.name == name; }) &&
            fremovexattr(file.number(), name.c_str()) != 0) {
            return false;
        }
    }
    return std::all_of(attributes.begin(), attributes.end(), [&](const FileAttribute& each) {
        return each.value == attributeOf(file, each.name) || setAttribute(each, file);
    });
}

bool copyAttributes(const Descriptor& from, const Descriptor& to)
{
    const auto attributes = attributesOf(from);
    return attributes && setAttributes(*attributes, to);
}

bool syncFile(const Descriptor& file)
{
    return uninterrupted([&] { return fsync(file.number()); }) == 0;
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
