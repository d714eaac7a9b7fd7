#pragma once

#include "adapters/posix/FileChange.h"
#include "adapters/posix/FileIdentity.h"
#include "adapters/posix/FileMetadata.h"
#include "adapters/posix/OpenFiles.h"
#include "adapters/posix/Pieces.h"
#include "adapters/posix/PreparedFile.h"

#include <filesystem>
#include <string>
#include <vector>

namespace dunmora {

/// A symbolic link: where it is, and what it contains.
struct SymbolicLink {
    std::filesystem::path path;
    std::filesystem::path text;
};

/// The names of a file that is to be created.
struct NewNames {
    /// One or more absolute paths, hard links of each other.
    std::vector<std::filesystem::path> targets;
    std::vector<SymbolicLink> links;
};

/// Creates a file under new names. Every name comes into being in one step, with the whole content,
/// and never in the place of another file: when one has been taken, nothing is created.
class FileCreation final : public FileChange {
public:
    /// Writes the content to a `PreparedFile`. The content must stay valid.
    FileCreation(NewNames names, const FileMetadata& metadata, Pieces content);

    const Pieces& content() const { return content_; }

    /// The content that has been prepared, to be read back.
    const PreparedFile& newFile() const { return newFile_; }

    /// Sentences about the part of the metadata that the system did not allow, or an empty text.
    const std::string& remarks() const { return remarks_; }

    /// Closes the file until it is needed. A `LockedFolder` must protect it.
    void closeFiles();

    void checkUnchanged() const override;
    void apply() override;
    /// There is no old file.
    void checkOldFile() override {}
    void checkOldFileAgain() const override {}
    std::string finish() override { return {}; }
    std::string revert() override;
    std::vector<std::filesystem::path> changedPaths() const override;
    std::vector<std::filesystem::path> folders() const override;

private:
    struct Place {
        std::filesystem::path target;
        std::filesystem::path temporary;
        bool isTaken = false;
    };
    struct LinkPlace {
        SymbolicLink link;
        // Known as soon as it has been created.
        FileIdentity identity;
        bool isTaken = false;
    };

    const std::filesystem::path& name() const { return places_.front().target; }
    void nameNewFile();
    void put(Place& place);
    static void put(LinkPlace& place);
    std::string takeBack(Place& place) const;
    static std::string takeBack(LinkPlace& place);

    std::vector<Place> places_;
    std::vector<LinkPlace> links_;
    Pieces content_;
    std::string remarks_;
    PreparedFile newFile_;
};

}  // namespace dunmora
