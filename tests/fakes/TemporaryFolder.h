#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>

namespace dunmora::test {

/// A folder that is gone with its owner.
class TemporaryFolder final {
public:
    TemporaryFolder()
    {
        auto pattern = (std::filesystem::temp_directory_path() / "dunmora-XXXXXX").string();
        if (::mkdtemp(pattern.data()) == nullptr) {
            throw std::runtime_error("No temporary folder: " + pattern);
        }
        path_ = pattern;
    }
    ~TemporaryFolder()
    {
        std::error_code error;
        std::filesystem::remove_all(path_, error);
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }

private:
    std::filesystem::path path_;
};

/// Writes the file in place, whatever was in it.
inline void write(const std::filesystem::path& file, std::string_view content)
{
    std::ofstream(file, std::ios::binary) << content;
}

inline std::string contentOf(const std::filesystem::path& file)
{
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

/// The names of what is in a folder.
inline std::set<std::string> namesIn(const std::filesystem::path& folder)
{
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        names.insert(entry.path().filename().string());
    }
    return names;
}

}  // namespace dunmora::test
