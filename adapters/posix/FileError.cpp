#include "adapters/posix/FileError.h"

#include "platform/PlatformError.h"
#include "text/DisplayText.h"

#include <cerrno>
#include <string>
#include <system_error>

namespace dunmora {

void throwFileError(const std::filesystem::path& path, std::string_view what, int error)
{
    throw PlatformError(quotedPath(path) + " " + std::string(what) + ": " +
                        std::generic_category().message(error) + ".");
}

std::string couldNotBeRestored(const std::filesystem::path& path,
                               const std::filesystem::path& temporary, int error)
{
    return quotedPath(path) + " could not be restored: " + std::generic_category().message(error) +
           ". What was in its place before is in " + quotedPath(temporary) + ".";
}

void appendSentences(std::string& message, std::string_view sentences)
{
    if (!message.empty() && !sentences.empty()) {
        message += ' ';
    }
    message += sentences;
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
