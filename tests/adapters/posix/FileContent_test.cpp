#include "adapters/posix/FileContent.h"

#include "tests/adapters/posix/FailingCalls.h"
#include "tests/adapters/posix/FileTest.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstddef>
#include <string>
#include <string_view>

#include <fcntl.h>
#include <unistd.h>

namespace dunmora::test {
namespace {

class FileContentTest : public FileTest {};

TEST_F(FileContentTest, IsTheWholeFile)
{
    write(path("a"), "content");

    EXPECT_EQ(readFile(path("a")).bytes.view(), "content");
    EXPECT_EQ(readFile(path("a"), 7).bytes.view(), "content");
}

TEST_F(FileContentTest, IsRefusedWhenItIsLargerThanAllowed)
{
    write(path("a"), "content");

    EXPECT_EQ(failureOf([&] { readFile(path("a"), 6); }),
              about(path("a"), "cannot be read: File too large."));
}

/// A file that several threads read together, of which each piece is different.
std::string largeContent()
{
    std::string content;
    for (int line = 0; content.size() < std::size_t{10} << 20U; ++line) {
        content += std::to_string(line) + "\n";
    }
    return content;
}

TEST_F(FileContentTest, IsTheWholeFileWhenItIsLarge)
{
    const auto content = largeContent();
    write(path("a"), content);

    EXPECT_TRUE(readFile(path("a")).bytes.view() == content);
    EXPECT_TRUE(readFile(path("a"), content.size()).bytes.view() == content);
}

TEST_F(FileContentTest, IsNotReadByThreadsWhenItIsSmall)
{
    write(path("a"), "content");
    const FailingCalls failing(Call::ReadAt, EIO);

    EXPECT_EQ(readFile(path("a")).bytes.view(), "content");
    EXPECT_EQ(failing.failed(), 0);
}

TEST_F(FileContentTest, IsNotReadByThreadsWhenItIsTooLarge)
{
    const auto content = largeContent();
    write(path("a"), content);
    const FailingCalls failing(Call::ReadAt, EIO);

    EXPECT_EQ(failureOf([&] { readFile(path("a"), content.size() - 1); }),
              about(path("a"), "cannot be read: File too large."));
    EXPECT_EQ(failing.failed(), 0);
}

TEST_F(FileContentTest, BeginsAtTheFilesPosition)
{
    const auto content = largeContent();
    write(path("a"), content);
    const auto file = openFile(path("a"), O_RDONLY);
    ASSERT_EQ(lseek(file.number(), 5, SEEK_SET), 5);

    EXPECT_TRUE(readFile(file, path("a")).bytes.view() == std::string_view(content).substr(5));
}

TEST_F(FileContentTest, CannotBeReadWhenTheDiskFails)
{
    write(path("a"), largeContent());
    const FailingCalls failing(Call::ReadAt, EIO, 1000);

    EXPECT_EQ(failureOf([&] { readFile(path("a")); }),
              about(path("a"), "cannot be read: Input/output error."));
}

}  // namespace
}  // namespace dunmora::test
