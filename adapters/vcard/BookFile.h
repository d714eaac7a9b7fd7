#pragma once

#include "adapters/posix/Descriptor.h"
#include "adapters/posix/UnfinishedFile.h"

#include <compare>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/stat.h>
#include <sys/types.h>

namespace dunmora {

/// The bytes of a file as they were read.
class FileBytes final {
public:
    /// Memory that nothing has been written to yet. Not a std::string or a std::vector: those would
    /// fill it before the file does.
    using Memory = std::unique_ptr<char[]>;  // NOLINT(modernize-avoid-c-arrays): sized at run time
    static Memory allocate(std::size_t size);

    FileBytes() = default;
    /// The first `size` bytes of `memory`.
    FileBytes(Memory memory, std::size_t size);

    std::string_view view() const { return {memory_.get(), size_}; }

private:
    Memory memory_;
    std::size_t size_ = 0;
};

/// The path as text for the user: UTF-8 in one line, whatever bytes it has.
std::string shown(const std::filesystem::path& path);

/// The same between quotation marks.
std::string quoted(const std::filesystem::path& path);

/// Which file it is, whatever its names.
struct FileIdentity {
    dev_t device = 0;
    ino_t inode = 0;

    // NOLINTNEXTLINE(modernize-use-nullptr): there is no pointer here
    auto operator<=>(const FileIdentity&) const = default;
};

/// A file as it was read.
struct ReadFile {
    FileIdentity identity;
    FileBytes bytes;
};

/// Reads a whole file.
/// Errors: PlatformError with the path and the reason.
ReadFile readFile(const std::filesystem::path& path);

/// Parts of a file's content, in order.
using Pieces = std::vector<std::string_view>;

/// A change of one file, from the check that it is still what was read to the moment when the new
/// content takes its place. Until `commit` nothing but a file beside it has been touched, and the
/// end of the object takes that away. The file is locked (flock) as long as the object lives.
class FileChange final {
public:
    /// Opens and locks the file that has these names (links to it included), and compares it.
    /// Errors: PlatformError when it is gone, read-only or another program's for the moment, or
    /// when its content is not `expected`.
    FileChange(std::vector<std::filesystem::path> names, const Pieces& expected);

    /// Writes the new content beside the file and brings it to the disk: same owner, mode and
    /// extended attributes. Errors: PlatformError.
    void prepare(const Pieces& content);

    /// Makes sure, as far as that can be told, that the file can be taken away instead.
    /// Errors: PlatformError.
    void prepareRemoval() const;

    /// Errors: PlatformError when the file has changed since it was compared.
    void checkUnchanged() const;

    /// Puts the prepared file in the place of the old one, under all of its names. It is the
    /// caller's to make this unbroken work.
    /// Errors: PlatformError, also when the file has changed since it was compared.
    void commit();

    /// Takes the file away instead, with all of its names. Errors: as `commit`.
    void remove();

    /// Whether any of the names stands for something new by now.
    bool hasBegun() const { return !done_.empty(); }

    /// The folders that have to be brought to the disk after the change.
    std::vector<std::filesystem::path> folders() const;

private:
    const Descriptor& prepared() const;
    void checkFolders(const std::vector<std::filesystem::path>& entries,
                      const std::string& whatFails) const;
    void replace(const std::filesystem::path& target);
    [[noreturn]] void failAt(const std::filesystem::path& path, const std::string& what,
                             int error) const;

    // The names as the user knows them.
    std::vector<std::filesystem::path> names_;
    // The same as full paths: those that are symbolic links, and the names of the file itself.
    std::vector<std::filesystem::path> links_;
    std::vector<std::filesystem::path> targets_;
    // Those of them that have been replaced or removed.
    std::vector<std::filesystem::path> done_;
    Descriptor file_;
    struct stat compared_ {};
    // The new file is the first of them where the file system can make one that has no name while
    // it is written, otherwise the second.
    Descriptor nameless_;
    std::optional<UnfinishedFile> named_;
};

/// Writes a new file and brings it to the disk. A file that exists is left alone.
/// Errors: PlatformError; a file begun is taken away, also when the process ends in order.
void writeNewFile(const std::filesystem::path& path, const Pieces& content);

}  // namespace dunmora
