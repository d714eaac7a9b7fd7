#include "adapters/posix/UnfinishedFile.h"

#include "tests/fakes/TemporaryFolder.h"

#include <fcntl.h>

#include <gtest/gtest.h>

#include <cerrno>
#include <filesystem>
#include <set>
#include <string>

namespace dunmora::test {
namespace {

constexpr mode_t kMode = S_IRUSR | S_IWUSR;

class UnfinishedFileTest : public testing::Test {
protected:
    std::filesystem::path file(std::string_view name) const { return folder_.path() / name; }

private:
    TemporaryFolder folder_;
};

TEST_F(UnfinishedFileTest, ExistsWhileItIsWritten)
{
    const UnfinishedFile unfinished(file("new"), O_WRONLY, kMode);

    EXPECT_TRUE(writeAll(unfinished.descriptor(), "half"));
    EXPECT_EQ(contentOf(file("new")), "half");
}

TEST_F(UnfinishedFileTest, IsDeletedByTheDestructor)
{
    {
        const UnfinishedFile unfinished(file("new"), O_WRONLY, kMode);
    }

    EXPECT_FALSE(std::filesystem::exists(file("new")));
}

TEST_F(UnfinishedFileTest, IsKeptWhenFinished)
{
    {
        UnfinishedFile unfinished(file("new"), O_WRONLY, kMode);
        unfinished.finish();
    }

    EXPECT_TRUE(std::filesystem::exists(file("new")));
}

TEST_F(UnfinishedFileTest, ReplacesAnotherFile)
{
    write(file("book"), "old");
    {
        UnfinishedFile unfinished(file("new"), O_WRONLY, kMode);
        writeAll(unfinished.descriptor(), "new");

        EXPECT_TRUE(unfinished.finishAs(file("book")));
    }

    EXPECT_EQ(namesIn(file("")), std::set<std::string>{"book"});
    EXPECT_EQ(contentOf(file("book")), "new");
}

TEST_F(UnfinishedFileTest, IsDeletedWhenItCannotBeRenamed)
{
    {
        UnfinishedFile unfinished(file("new"), O_WRONLY, kMode);

        EXPECT_FALSE(unfinished.finishAs(file("nowhere") / "book"));
        EXPECT_EQ(errno, ENOENT);
    }

    EXPECT_TRUE(namesIn(file("")).empty());
}

TEST_F(UnfinishedFileTest, NeitherRenamesNorDeletesAFileThatReplacedIt)
{
    write(file("book"), "old");
    {
        UnfinishedFile unfinished(file("new"), O_WRONLY, kMode);
        write(file("other"), "half of another");
        std::filesystem::rename(file("other"), file("new"));

        EXPECT_FALSE(unfinished.finishAs(file("book")));
        EXPECT_EQ(errno, ESTALE);
    }

    EXPECT_EQ(contentOf(file("book")), "old");
    EXPECT_EQ(contentOf(file("new")), "half of another");
}

TEST_F(UnfinishedFileTest, LeavesAnExistingFileAlone)
{
    write(file("old"), "old");
    {
        const UnfinishedFile unfinished(file("old"), O_WRONLY, kMode);

        EXPECT_FALSE(unfinished.descriptor().isOpen());
        EXPECT_EQ(errno, EEXIST);
    }

    EXPECT_EQ(contentOf(file("old")), "old");
}

}  // namespace
}  // namespace dunmora::test
