#include "adapters/vcard/CardFolder.h"

#include "adapters/posix/CardFileName.h"
#include "platform/PlatformError.h"
#include "text/DisplayText.h"

#include <algorithm>
#include <system_error>

namespace dunmora {

std::vector<std::filesystem::path> cardFilesIn(const std::filesystem::path& folder,
                                               std::vector<std::string>& remarks)
{
    std::vector<std::filesystem::path> paths;
    std::error_code error;
    std::filesystem::directory_iterator entry(folder, error);
    while (error == std::errc::interrupted) {
        entry = std::filesystem::directory_iterator(folder, error);
    }
    while (!error && entry != std::filesystem::directory_iterator()) {
        if (isCardFileName(entry->path().filename().string())) {
            paths.push_back(entry->path());
        }
        entry.increment(error);
    }
    if (error) {
        throw PlatformError(quotedPath(folder) + " cannot be read: " + error.message() + ".");
    }
    std::sort(paths.begin(), paths.end());
    std::erase_if(paths, [&](const std::filesystem::path& path) {
        std::error_code ignored;
        switch (std::filesystem::status(path, ignored).type()) {
        case std::filesystem::file_type::regular:
        case std::filesystem::file_type::none:
        case std::filesystem::file_type::unknown:
            return false;
        case std::filesystem::file_type::not_found:
            remarks.push_back(quotedPath(path) + " was skipped: it is a broken link.");
            return true;
        default:
            remarks.push_back(quotedPath(path) + " was skipped: it is not a file.");
            return true;
        }
    });
    return paths;
}

}  // namespace dunmora
