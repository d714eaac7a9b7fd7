#include "adapters/posix/FileError.h"

#include "platform/PlatformError.h"
#include "text/DisplayText.h"

#include <cerrno>
#include <string>
#include <system_error>

namespace dunmora {

void throwFileError(const std::filesystem::path& path, std::string_view what, int error)
{
    throwFileError(path, what, error, {});
}

void throwFileError(const std::filesystem::path& path, std::string_view what, int error,
                    const std::vector<std::filesystem::path>& done)
{
    std::string names;
    for (const auto& name : done) {
        names += (names.empty() ? "" : ", ") + quotedPath(name);
    }
    throw PlatformError(
        quotedPath(path) + " " + std::string(what) + ": " + std::generic_category().message(error) +
        "." + (done.empty() ? "" : " Already done for the same file under: " + names + "."));
}

struct stat statusOf(const Descriptor& file, const std::filesystem::path& path)
{
    struct stat status {};
    if (fstat(file.number(), &status) != 0) {
        throwFileError(path, kCannotBeRead, errno);
    }
    return status;
}

}  // namespace dunmora
