#include "adapters/defaults/IniFile.h"

#include "adapters/posix/FileChanges.h"
#include "adapters/posix/FileComparison.h"
#include "adapters/posix/FileContent.h"
#include "adapters/posix/FileError.h"
#include "adapters/posix/FileReplacement.h"
#include "adapters/posix/LockedFolder.h"
#include "platform/PlatformError.h"
#include "text/DisplayText.h"

#include <cerrno>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string_view>
#include <system_error>
#include <utility>

namespace dunmora {

namespace {

/// Far more than anybody writes. In memory a file of blank lines takes a hundred times its size.
constexpr std::uintmax_t kLargest = std::uintmax_t{1} << 20U;

/// Errors: PlatformError when the content is not that of an INI file.
IniDocument parse(std::string_view content, const std::filesystem::path& file)
{
    auto document = IniDocument::parsed(content);
    if (!document) {
        throw PlatformError(quotedPath(file) +
                            " is not a valid preferences file. Correct it or delete it.");
    }
    return *std::move(document);
}

}  // namespace

IniFile::IniFile(std::filesystem::path file, std::chrono::milliseconds lockTimeout)
    : file_(std::move(file)), lockTimeout_(lockTimeout)
{
}

IniDocument IniFile::load() const
{
    std::error_code error;
    if (std::filesystem::status(file_, error).type() == std::filesystem::file_type::not_found) {
        return parse({}, file_);
    }
    // Reading needs no lock: the file is replaced as a whole.
    return parse(readFile(file_, kLargest).bytes.view(), file_);
}

void IniFile::change(const Edit& edit) const
{
    constexpr int kMaxAttempts = 3;
    // The threads of this program wait for each other however slow the disk is. The time limit is
    // for other programs, whose lock nobody here can release.
    static std::mutex oneChange;
    const std::lock_guard guard(oneChange);
    const auto tryAgain = LockedFile::tryAgainFor(lockTimeout_);
    for (int attempt = 1;; ++attempt) {
        try {
            change(LockedFile::openOrCreate(file_, tryAgain), tryAgain, edit);
            return;
        } catch (const FileHasChanged&) {
            if (attempt == kMaxAttempts) {
                throw PlatformError(quotedPath(file_) +
                                    " is being changed by another program. Try again later.");
            }
        }
    }
}

/// Changes the file as it is now.
void IniFile::change(LockedFile file, const LockedFile::TryAgain& tryAgain, const Edit& edit) const
{
    if (static_cast<std::uintmax_t>(file.status().st_size) > kLargest) {
        throwFileError(file_, kCannotBeChanged, EFBIG);
    }
    const auto content = file.content();
    file.expectContent({content.view()});
    auto document = parse(content.view(), file_);
    if (!edit(document)) {
        return;
    }
    const auto text = document.text();
    LockedFolders folders;
    folders.lock(file.targets().front().parent_path(), tryAgain);
    FileChanges changes;
    changes.add(std::make_unique<FileReplacement>(std::move(file), Pieces{text}), file_);
    changes.commit([](std::size_t /*index*/) {});
}

}  // namespace dunmora
