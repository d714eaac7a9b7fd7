#pragma once

#include "adapters/posix/Descriptor.h"

#include <filesystem>

#include <sys/types.h>

namespace dunmora {

/// A new file that is taken away with its object, and by an end of the process in order, unless it
/// has been finished before.
///
/// Thread: any, one at a time. Errors: as the calls of the system, by errno; nothing is thrown.
class UnfinishedFile final {
public:
    /// Makes the file, which must not be there. Errors: one that is not open, and errno.
    UnfinishedFile(std::filesystem::path path, int flags, mode_t mode);
    ~UnfinishedFile();
    UnfinishedFile(const UnfinishedFile&) = delete;
    UnfinishedFile& operator=(const UnfinishedFile&) = delete;
    UnfinishedFile(UnfinishedFile&&) = delete;
    UnfinishedFile& operator=(UnfinishedFile&&) = delete;

    /// Not open: the file could not be made.
    const Descriptor& descriptor() const { return descriptor_; }
    const std::filesystem::path& path() const { return path_; }

    /// From now on the file stays.
    void finish();

    /// As rename(2), and finishes the file. Errors: false, and errno; the file is then unfinished.
    bool finishAs(const std::filesystem::path& target);

    /// Takes away the files of all objects.
    static void removeAll();

private:
    void enterList();
    void leaveList();

    std::filesystem::path path_;
    Descriptor descriptor_;
    bool isListed_ = false;
};

}  // namespace dunmora
