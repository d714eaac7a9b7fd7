#pragma once

#include "adapters/posix/Descriptor.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace dunmora {

/// The bytes of a file; none when there is no file.
/// Thread: any. Errors: PlatformError with the reason alone.
std::string contentOf(const std::filesystem::path& file);

/// A small file that no other program changes meanwhile, for one change: read it, then replace it
/// or move it aside. Programs that change it in other ways than this one are not kept out.
///
/// Thread: any; within one program, too, the second waits. Errors: PlatformError with the reason
/// alone; the file is then unchanged.
class LockedFile final {
public:
    /// Waits until nobody else holds the file. It is made, and its folders, when it is missing;
    /// when it is a symbolic link, the file that the link leads to is meant.
    explicit LockedFile(const std::filesystem::path& file);

    std::string read() const;

    /// Puts this content in the place of the old one, on the disk, at once or not at all.
    void replace(std::string_view content) const;

    /// Gives the file a name beside its own that nothing has yet, and returns that.
    std::filesystem::path moveAside(std::string_view suffix) const;

private:
    std::filesystem::path file_;
    Descriptor descriptor_;
};

}  // namespace dunmora
