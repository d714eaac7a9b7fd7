#include "adapters/vcard/CardFolder.h"

#include "adapters/posix/CardFileName.h"
#include "platform/PlatformError.h"
#include "text/DisplayText.h"

#include <algorithm>
#include <cstddef>
#include <deque>
#include <system_error>
#include <utility>

namespace dunmora {

namespace {

namespace fs = std::filesystem;

/// Finds subfolders with card files: those of the folder first, then theirs, and none below.
/// Follows no links, so that it visits no folder twice.
class SubfolderSearch final {
public:
    explicit SubfolderSearch(const fs::path& folder)
    {
        enter({folder, 0});
        while (!waiting_.empty() && folders_ < kMostFolders && entries_ < kMostEntries) {
            const auto next = std::move(waiting_.front());
            waiting_.pop_front();
            if (enter(next)) {
                found_.push_back(next.path.lexically_relative(folder));
            }
        }
    }

    const std::vector<fs::path>& found() const { return found_; }

private:
    static constexpr std::size_t kDepth = 2;
    // A slow network file system takes some milliseconds for each.
    static constexpr std::size_t kMostFolders = 100;
    static constexpr std::size_t kMostEntries = 10'000;

    struct Folder {
        fs::path path;
        std::size_t depth;
    };

    /// Returns whether the folder has card files. If not, its subfolders are searched later.
    bool enter(const Folder& folder)
    {
        ++folders_;
        std::vector<fs::path> subfolders;
        std::error_code error;
        fs::directory_iterator entry(folder.path, error);
        for (; !error && entry != fs::directory_iterator() && entries_ < kMostEntries;
             entry.increment(error), ++entries_) {
            const auto name = entry->path().filename().string();
            std::error_code ignored;
            if (entry->is_directory(ignored)) {
                if (folder.depth < kDepth && !name.starts_with('.') &&
                    !entry->is_symlink(ignored)) {
                    subfolders.push_back(entry->path());
                }
            } else if (isCardFileName(name)) {
                return true;
            }
        }
        std::sort(subfolders.begin(), subfolders.end());
        for (auto& path : subfolders) {
            waiting_.push_back({std::move(path), folder.depth + 1});
        }
        return false;
    }

    std::deque<Folder> waiting_;
    std::vector<fs::path> found_;
    std::size_t folders_ = 0;
    std::size_t entries_ = 0;
};

/// “a”; “a” and “b”; “a”, “b”, “c” and 2 more.
std::string listOf(const std::vector<fs::path>& names)
{
    constexpr std::size_t kMostNames = 3;
    const auto shown = std::min(names.size(), kMostNames);
    const auto more = names.size() - shown;
    std::string list;
    for (std::size_t i = 0; i < shown; ++i) {
        const bool isLast = i + 1 == shown && more == 0;
        list += i == 0 ? "" : isLast ? " and " : ", ";
        list += quotedPath(names[i]);
    }
    return list + (more > 0 ? " and " + std::to_string(more) + " more" : "");
}

}  // namespace

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

std::string remarkAboutNoCardFiles(const std::filesystem::path& folder)
{
    auto remark = quotedPath(folder) + " contains no .vcf or .vcard files.";
    const SubfolderSearch search(folder);
    if (const auto& found = search.found(); !found.empty()) {
        remark += found.size() == 1 ? " Its subfolder " + listOf(found) + " has some."
                                    : " Its subfolders " + listOf(found) + " have some.";
    }
    return remark;
}

}  // namespace dunmora
