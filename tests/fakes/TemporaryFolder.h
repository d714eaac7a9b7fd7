#pragma once

#include <filesystem>
#include <set>
#include <string>
#include <string_view>

namespace dunmora::test {

/// A folder that is deleted, with everything in it, when this object is destroyed.
class TemporaryFolder final {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

/// Writes the file in place and replaces its content.
void write(const std::filesystem::path& file, std::string_view content);

std::string contentOf(const std::filesystem::path& file);

/// Returns the names of the entries of a folder.
std::set<std::string> namesIn(const std::filesystem::path& folder);

}  // namespace dunmora::test
