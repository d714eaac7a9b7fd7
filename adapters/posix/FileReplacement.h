#pragma once

#include "adapters/posix/DisplacedFile.h"
#include "adapters/posix/FileChange.h"
#include "adapters/posix/FileCopy.h"
#include "adapters/posix/LockedFile.h"
#include "adapters/posix/OpenFiles.h"
#include "adapters/posix/Pieces.h"
#include "adapters/posix/PreparedFile.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace dunmora {

/// Replaces the content of a locked file: after a crash, a full disk or a power failure each name
/// of the file has the old content or the new one. Both files are exchanged in one step
/// (renameat2(2), RENAME_EXCHANGE); where the file system cannot do that, the new file is renamed
/// over the old one, which cannot be checked or reverted afterwards.
class FileReplacement final : public FileChange {
public:
    /// Writes the content to a `PreparedFile`. The content must stay valid. `mark` is an attribute
    /// that the new file gets where the system allows it.
    FileReplacement(LockedFile file, Pieces content,
                    const std::optional<FileAttribute>& mark = std::nullopt);

    const Pieces& content() const { return content_; }

    /// The content that has been prepared, to be read back.
    const PreparedFile& newFile() const { return newFile_; }

    /// Closes both files until they are needed. A `LockedFolder` must protect them.
    void closeFiles();

    void checkUnchanged() const override { file_.checkUnchanged(); }
    void apply() override;
    void checkOldFile() override;
    void checkOldFileAgain() const override;
    std::string finish() override;
    std::string revert() override;
    std::vector<std::filesystem::path> changedPaths() const override;
    std::vector<std::filesystem::path> folders() const override;

private:
    enum class State { Prepared, Exchanged, Replaced };

    /// One name of the file, and the temporary name beside it.
    struct Place {
        std::filesystem::path target;
        std::filesystem::path temporary;
        State state = State::Prepared;
    };

    void nameNewFile();
    void put(Place& place);
    std::string putBack(Place& place);

    LockedFile file_;
    Pieces content_;
    PreparedFile newFile_;
    OpenFiles openFiles_ = OpenFiles::Keep;
    std::vector<Place> places_;
    DisplacedFile old_;
};

}  // namespace dunmora
