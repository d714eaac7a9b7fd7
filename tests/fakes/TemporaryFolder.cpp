#include "tests/fakes/TemporaryFolder.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace dunmora::test {

TemporaryFolder::TemporaryFolder()
{
    auto pattern = (std::filesystem::temp_directory_path() / "dunmora-XXXXXX").string();
    if (::mkdtemp(pattern.data()) == nullptr) {
        throw std::runtime_error("Could not create a temporary folder: " + pattern);
    }
    path_ = pattern;
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code error;
    std::filesystem::remove_all(path_, error);
}

void write(const std::filesystem::path& file, std::string_view content)
{
    std::ofstream(file, std::ios::binary) << content;
}

std::string contentOf(const std::filesystem::path& file)
{
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

std::set<std::string> namesIn(const std::filesystem::path& folder)
{
    std::set<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        names.insert(entry.path().filename().string());
    }
    return names;
}

}  // namespace dunmora::test
