#pragma once

#include "adapters/posix/Descriptor.h"
#include "adapters/posix/FileIdentity.h"

#include <filesystem>
#include <utility>

#include <sys/types.h>

namespace dunmora {

/// A name of a new file that is deleted by its destructor and by an orderly exit of the process,
/// unless it has been finished. A file that another program has put at its path is neither deleted
/// nor renamed.
///
/// Thread: any, one at a time. Errors: reported through errno as by the system calls; nothing is
/// thrown.
class UnfinishedFile final {
public:
    /// Creates the file, which must not exist. Errors: it does not exist, and errno.
    UnfinishedFile(std::filesystem::path path, int flags, mode_t mode);
    /// Gives the file at `source` this new name too. A file without a name is at
    /// `/proc/self/fd/N`.
    /// Errors: it does not exist, and errno: EEXIST when another file has the name, ESTALE when
    /// another file than `identity` is at `source`.
    UnfinishedFile(std::filesystem::path path, const std::filesystem::path& source,
                   FileIdentity identity);
    ~UnfinishedFile();
    UnfinishedFile(const UnfinishedFile&) = delete;
    UnfinishedFile& operator=(const UnfinishedFile&) = delete;
    UnfinishedFile(UnfinishedFile&&) = delete;
    UnfinishedFile& operator=(UnfinishedFile&&) = delete;

    /// False when the file could not be created and after `finish`.
    bool exists() const { return isListed_; }
    /// Not open when the file was not created but named.
    const Descriptor& descriptor() const { return descriptor_; }
    const std::filesystem::path& path() const { return path_; }
    FileIdentity identity() const { return identity_; }

    /// Returns the descriptor and keeps none.
    Descriptor takeDescriptor() { return std::exchange(descriptor_, Descriptor()); }

    /// Renames the file to a name that no other file has. Errors: false, and errno.
    bool renameTo(std::filesystem::path path);

    /// Keeps the file.
    void finish();
    /// Makes a finished file unfinished again.
    void takeBack();

    /// Deletes every unfinished file of the process.
    static void removeAll();

private:
    bool hasOwnPath() const;
    void removeNew();
    void removeOwn() const;
    void enlist();
    void delist();

    std::filesystem::path path_;
    Descriptor descriptor_;
    FileIdentity identity_;
    bool isListed_ = false;
};

}  // namespace dunmora
