#include "adapters/posix/FileExchange.h"

#include "tests/adapters/posix/FileTest.h"

#include <fcntl.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <set>
#include <string>

namespace dunmora::test {
namespace {

using Names = std::set<std::string>;

class FileExchangeTest : public FileTest {
protected:
    FileExchangeTest()
    {
        write(path("one"), "1");
        write(path("other"), "2");
    }
};

TEST_F(FileExchangeTest, ExchangesTwoFiles)
{
    ASSERT_TRUE(exchangeFiles(path("one"), path("other")));

    EXPECT_EQ(contentOf(path("one")), "2");
    EXPECT_EQ(contentOf(path("other")), "1");
}

TEST_F(FileExchangeTest, NeedsBothFiles)
{
    EXPECT_FALSE(exchangeFiles(path("one"), path("none")));
    EXPECT_EQ(errno, ENOENT);
    EXPECT_FALSE(isUnsupported(errno));

    EXPECT_EQ(contentOf(path("one")), "1");
}

TEST_F(FileExchangeTest, RenamesToANewName)
{
    ASSERT_TRUE(renameToNewName(path("one"), path("new")));

    EXPECT_EQ(namesIn(folder()), (Names{"new", "other"}));
}

TEST_F(FileExchangeTest, RenamesOverNoFile)
{
    EXPECT_FALSE(renameToNewName(path("one"), path("other")));
    EXPECT_EQ(errno, EEXIST);

    EXPECT_EQ(contentOf(path("other")), "2");
}

using WriterWatchTest = FileExchangeTest;

TEST_F(WriterWatchTest, SeesNobody)
{
    const auto file = openFile(path("one"), O_RDONLY);
    const auto reader = openFile(path("one"), O_RDONLY);

    const WriterWatch watch(file);

    EXPECT_FALSE(watch.hasWriter());
    EXPECT_TRUE(openFile(path("one"), O_RDONLY).isOpen());
    EXPECT_FALSE(watch.hasWriter());
}

TEST_F(WriterWatchTest, SeesAProgramThatHasTheFileOpen)
{
    const auto writer = openFile(path("one"), O_WRONLY);
    const auto file = openFile(path("one"), O_RDONLY);

    EXPECT_TRUE(WriterWatch(file).hasWriter());
}

TEST_F(WriterWatchTest, SeesAProgramThatAsksForTheFile)
{
    const auto file = openFile(path("one"), O_RDONLY);
    const WriterWatch watch(file);

    // openFile does not wait until the lease ends.
    EXPECT_FALSE(openFile(path("one"), O_WRONLY).isOpen());

    EXPECT_TRUE(watch.hasWriter());
}

TEST_F(WriterWatchTest, IsNotEndedByTheSignalOfALease)
{
    const auto file = openFile(path("one"), O_RDONLY);
    const WriterWatch watch(file);

    EXPECT_EQ(std::raise(SIGIO), 0);

    EXPECT_FALSE(watch.hasWriter());
}

}  // namespace
}  // namespace dunmora::test
