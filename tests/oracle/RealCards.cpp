#include "tests/oracle/RealCards.h"

#include "adapters/posix/FileContent.h"
#include "adapters/vcard/ForeignFile.h"
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace dunmora::test {

std::filesystem::path realCardFolder()
{
    const auto* chosen =
        std::getenv("DUNMORA_VCARDS");  // NOLINT(concurrency-mt-unsafe): one thread
    return chosen != nullptr && *chosen != '\0' ? chosen : DUNMORA_VCARDS;
}

std::vector<std::filesystem::path> realCardFiles()
{
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(realCardFolder())) {
        if (entry.is_regular_file() && entry.path().filename() != "ORIGIN.txt" &&
            entry.path().extension() != ".tsv" &&
            !isForeign({entry.path(), readFile(entry.path()).bytes})) {
            files.push_back(entry.path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

std::string nameOf(const std::filesystem::path& file)
{
    return file.parent_path().filename().string() + "@" + file.filename().string();
}

void DifferenceList::add(const std::string& file, const std::vector<Difference>& differences)
{
    for (const auto& difference : differences) {
        const auto isAccepted =
            std::any_of(accepted_.begin(), accepted_.end(), [&](const auto& accepted) {
                return accepted.file == file && accepted.where == difference.where;
            });
        EXPECT_TRUE(isAccepted) << file << ": " << described(difference);
        seen_.insert(file + " " + difference.where);
    }
}

void DifferenceList::failForUnseen() const
{
    for (const auto& accepted : accepted_) {
        EXPECT_TRUE(seen_.contains(std::string(accepted.file) + " " + std::string(accepted.where)))
            << accepted.file << ": " << accepted.where << " no longer differs";
    }
}

}  // namespace dunmora::test
