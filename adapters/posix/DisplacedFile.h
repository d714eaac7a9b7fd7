#pragma once

#include "adapters/posix/Descriptor.h"
#include "adapters/posix/FileExchange.h"
#include "adapters/posix/FileIdentity.h"
#include "adapters/posix/OpenFiles.h"
#include "adapters/posix/Pieces.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <sys/stat.h>

namespace dunmora {

/// A file that has been taken from its place to temporary names, to be removed. It may have become
/// another file at the last moment, or another program may be writing to it, so it is checked
/// before and after.
///
/// Thread: one at a time; blocks on the disk. Errors: PlatformError about the name.
class DisplacedFile final {
public:
    /// The file must be this one, with this content; the content must stay valid. `name` is for
    /// errors.
    DisplacedFile(std::filesystem::path name, FileIdentity identity, Pieces content);

    /// Adds a name under which the file should be now.
    void addName(std::filesystem::path temporary);
    /// Adds a symbolic link that should be at `temporary` now.
    void addLink(std::filesystem::path temporary, FileIdentity link);

    /// Throws unless the file with this content is at every name and nobody has it open for
    /// writing.
    void check(OpenFiles openFiles);

    /// Throws when something has changed since `check`.
    void checkAgain() const;

    /// Deletes every name that still leads to the file. Returns sentences about those that could
    /// not be deleted, or an empty text.
    std::string remove();

private:
    struct Name {
        std::filesystem::path path;
        FileIdentity identity;
        bool isLink = false;
    };

    void checkNames() const;
    Descriptor open() const;
    void checkStatus(const Descriptor& file) const;
    void checkWriters(const WriterWatch& watch) const;

    std::filesystem::path name_;
    FileIdentity identity_;
    Pieces content_;
    std::vector<Name> names_;
    // The rest is known since the check.
    struct stat status_ {};
    Descriptor descriptor_;
    std::optional<WriterWatch> watch_;
};

}  // namespace dunmora
