#pragma once

#include "adapters/posix/Descriptor.h"
#include "adapters/posix/FileChange.h"
#include "adapters/posix/LockedFile.h"
#include "adapters/posix/Pieces.h"
#include "adapters/posix/UnfinishedFile.h"

#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

namespace dunmora {

/// Replaces the content of a locked file: after a crash, a full disk or a power failure each name
/// of the file has the old content or the new one.
class FileReplacement final : public FileChange {
public:
    /// Writes the content to a new file with the same owner, mode and extended attributes, and
    /// flushes it to disk. The new file has no name where the system supports that (O_TMPFILE), so
    /// that a killed process leaves nothing behind.
    FileReplacement(LockedFile file, const Pieces& content);

    void checkUnchanged() const override { file_.checkUnchanged(); }
    /// Renames the new file over the old one.
    void commit() override;
    const std::vector<std::filesystem::path>& done() const override { return done_; }

private:
    void createFile();
    void copyMetadata() const;
    void replace(const std::filesystem::path& target);
    const Descriptor& newFile() const;
    std::filesystem::path besideTarget(const std::filesystem::path& target,
                                       std::string_view suffix) const;
    [[noreturn]] void fail(const std::filesystem::path& target, int error) const;

    LockedFile file_;
    std::vector<std::filesystem::path> done_;
    // The new file: without a name, or with one where the system does not support that.
    Descriptor nameless_;
    std::optional<UnfinishedFile> named_;
};

}  // namespace dunmora
