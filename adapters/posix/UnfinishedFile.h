#pragma once

#include "adapters/posix/Descriptor.h"

#include <filesystem>

#include <sys/types.h>

namespace dunmora {

/// A new file that is deleted by its destructor and by an orderly exit of the process, unless it
/// has been finished. A file that another program has put at its path is neither deleted nor
/// renamed.
///
/// Thread: any, one at a time. Errors: reported through errno as by the system calls; nothing is
/// thrown.
class UnfinishedFile final {
public:
    /// Creates the file, which must not exist. Errors: the descriptor is not open, and errno.
    UnfinishedFile(std::filesystem::path path, int flags, mode_t mode);
    ~UnfinishedFile();
    UnfinishedFile(const UnfinishedFile&) = delete;
    UnfinishedFile& operator=(const UnfinishedFile&) = delete;
    UnfinishedFile(UnfinishedFile&&) = delete;
    UnfinishedFile& operator=(UnfinishedFile&&) = delete;

    /// Not open when the file could not be created.
    const Descriptor& descriptor() const { return descriptor_; }
    const std::filesystem::path& path() const { return path_; }

    /// Keeps the file.
    void finish();

    /// Renames the file as rename(2) does and keeps it. Errors: false, and errno; the file is then
    /// still unfinished.
    bool finishAs(const std::filesystem::path& target);

    /// Deletes every unfinished file of the process.
    static void removeAll();

private:
    bool hasOwnPath() const;
    void removeOwn() const;
    void enlist();
    void delist();

    std::filesystem::path path_;
    Descriptor descriptor_;
    bool isListed_ = false;
};

}  // namespace dunmora
