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

TEST_F(UnfinishedFileTest, IsDeletedAfterItWasTakenBack)
{
    {
        UnfinishedFile unfinished(file("new"), O_WRONLY, kMode);
        unfinished.finish();
        unfinished.takeBack();
    }

    EXPECT_FALSE(std::filesystem::exists(file("new")));
}

TEST_F(UnfinishedFileTest, CanBeRenamedToANewName)
{
    {
        UnfinishedFile unfinished(file("new"), O_WRONLY, kMode);

        EXPECT_TRUE(unfinished.renameTo(file("newer")));
        EXPECT_EQ(namesIn(file("")), std::set<std::string>{"newer"});
    }

    EXPECT_TRUE(namesIn(file("")).empty());
}

TEST_F(UnfinishedFileTest, IsNotRenamedOverAnotherFile)
{
    write(file("book"), "old");
    {
        UnfinishedFile unfinished(file("new"), O_WRONLY, kMode);

        EXPECT_FALSE(unfinished.renameTo(file("book")));
        EXPECT_EQ(errno, EEXIST);
    }

    EXPECT_EQ(namesIn(file("")), std::set<std::string>{"book"});
    EXPECT_EQ(contentOf(file("book")), "old");
}

TEST_F(UnfinishedFileTest, NeitherRenamesNorDeletesAFileThatReplacedIt)
{
    {
        UnfinishedFile unfinished(file("new"), O_WRONLY, kMode);
        write(file("other"), "half of another");
        std::filesystem::rename(file("other"), file("new"));

        EXPECT_FALSE(unfinished.renameTo(file("newer")));
        EXPECT_EQ(errno, ESTALE);
    }

    EXPECT_EQ(contentOf(file("new")), "half of another");
}

TEST_F(UnfinishedFileTest, CanBeAnotherNameOfAFile)
{
    const UnfinishedFile first(file("new"), O_WRONLY, kMode);
    {
        const UnfinishedFile second(file("same"), file("new"), first.identity());

        EXPECT_TRUE(second.exists());
        EXPECT_TRUE(std::filesystem::equivalent(file("new"), file("same")));
    }

    EXPECT_EQ(namesIn(file("")), std::set<std::string>{"new"});
}

TEST_F(UnfinishedFileTest, IsNoNameOfAFileThatReplacedTheFirst)
{
    const UnfinishedFile first(file("new"), O_WRONLY, kMode);
    write(file("other"), "another");
    std::filesystem::rename(file("other"), file("new"));

    const UnfinishedFile second(file("same"), file("new"), first.identity());

    EXPECT_EQ(errno, ESTALE);
    EXPECT_FALSE(second.exists());
    EXPECT_EQ(namesIn(file("")), std::set<std::string>{"new"});
}

TEST_F(UnfinishedFileTest, LeavesAnExistingFileAlone)
{
    write(file("old"), "old");
    {
        const UnfinishedFile unfinished(file("old"), O_WRONLY, kMode);

        EXPECT_FALSE(unfinished.exists());
        EXPECT_EQ(errno, EEXIST);
    }

    EXPECT_EQ(contentOf(file("old")), "old");
}

}  // namespace
}  // namespace dunmora::test
