#pragma once

#include "adapters/posix/Descriptor.h"
#include "adapters/posix/FileBytes.h"
#include "adapters/posix/FileCopy.h"
#include "adapters/posix/FileIdentity.h"
#include "adapters/posix/LockedFile.h"
#include "adapters/posix/Pieces.h"
#include "adapters/posix/UnfinishedFile.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <list>
#include <optional>
#include <span>
#include <string_view>

namespace dunmora {

/// The complete and flushed new content of a file, in a new file of the same folder. The content of
/// a locked file comes with the same owner, mode and extended attributes. The new file is locked
/// too, so that other deletions leave it alone, and no descriptor allows writing to it.
///
/// It has no name where the system supports that (O_TMPFILE), so that a killed process leaves
/// nothing behind.
///
/// Thread: one at a time; blocks on the disk. Errors: PlatformError about the file.
class PreparedFile final {
public:
    /// `mark` is one more attribute, set where the system allows it.
    PreparedFile(const LockedFile& old, const Pieces& content,
                 const std::optional<FileAttribute>& mark = std::nullopt);

    /// Prepares a file that takes nobody's place but will be at `target`. `setMetadata` gives it
    /// what it has besides its content. `name` is for errors.
    PreparedFile(std::filesystem::path name, const std::filesystem::path& target,
                 const Pieces& content, const std::function<void(const Descriptor&)>& setMetadata);

    FileIdentity identity() const { return identity_; }

    /// Reads back what has been written.
    FileBytes content() const;
    /// Reads back whether exactly this has been written.
    bool has(const Pieces& content) const;
    /// Reads back a part, as the function `readAt`. Thread: any, several at once.
    std::size_t readAt(std::span<char> place, std::size_t position) const;

    /// Gives the file a temporary name beside `target`, one of the targets of the locked file in
    /// their order, and returns it. The name is removed with this object, or when the process
    /// exits, unless it is kept.
    std::filesystem::path nameBeside(const std::filesystem::path& target);

    /// Closes the descriptor, also the lock. The file must have a name.
    void close();

    /// Leaves the name alone from now on.
    void keep(const std::filesystem::path& name);
    /// Removes the name with this object again.
    void takeBack(const std::filesystem::path& name);

private:
    void prepare(const std::filesystem::path& firstTarget, const Pieces& content,
                 const std::function<void(const Descriptor&)>& setMetadata);
    void create(const std::filesystem::path& firstTarget);
    void createNamed(const std::filesystem::path& firstTarget);
    Descriptor openForReading() const;
    void lock(const Descriptor& file) const;
    UnfinishedFile& at(const std::filesystem::path& name);
    [[noreturn]] void fail(int error) const;

    // For errors.
    std::filesystem::path oldName_;
    std::string_view whatFails_;
    FileIdentity identity_;
    // For writing first, then for reading.
    Descriptor descriptor_;
    // The first one is the file as it was created, where it cannot be created without a name.
    std::list<UnfinishedFile> names_;
    // Where the next name can be linked from.
    std::filesystem::path source_;
    // The file has been created with the name beside the first target.
    bool isFirstTargetNamed_ = false;
};

}  // namespace dunmora
