#include "adapters/posix/ReadSideBySide.h"

#include "tests/adapters/posix/FailingCalls.h"
#include "tests/adapters/posix/FileTest.h"

#include <gtest/gtest.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <string>

#include <fcntl.h>
#include <unistd.h>

namespace dunmora::test {
namespace {

class ReadSideBySideTest : public FileTest {
protected:
    /// Every letter of `kContent` is another one.
    static constexpr std::string_view kContent = "abcdefghijklmnopqrstuvwxyz";

    ReadSideBySideTest()
    {
        write(path("a"), kContent);
        file_ = openFile(path("a"), O_RDONLY);
    }

    /// Reads this many bytes in pieces of 4; "" when that is not possible.
    std::string readBytes(std::size_t size, std::size_t threads = 2)
    {
        std::string place(size, '-');
        return readSideBySide(file_, path("a"), place, 4, threads) ? place : "";
    }

    off_t position() const { return lseek(file_.number(), 0, SEEK_CUR); }

    Descriptor file_;
};

TEST_F(ReadSideBySideTest, ReadsEveryPieceToItsPlace)
{
    for (const std::size_t size : {1, 3, 4, 5, 25, 26}) {
        ASSERT_EQ(lseek(file_.number(), 0, SEEK_SET), 0);

        EXPECT_EQ(readBytes(size), kContent.substr(0, size));
        EXPECT_EQ(position(), static_cast<off_t>(size));
    }
}

TEST_F(ReadSideBySideTest, BeginsAtTheCurrentPosition)
{
    ASSERT_EQ(lseek(file_.number(), 3, SEEK_SET), 3);

    EXPECT_EQ(readBytes(10), "defghijklm");
    EXPECT_EQ(position(), 13);
}

TEST_F(ReadSideBySideTest, LeavesAShorterFileToTheCaller)
{
    ASSERT_EQ(lseek(file_.number(), 3, SEEK_SET), 3);

    EXPECT_EQ(readBytes(kContent.size()), "");
    EXPECT_EQ(position(), 3);
}

TEST_F(ReadSideBySideTest, LeavesAPipeToTheCaller)
{
    auto pipe = openPipe();
    ASSERT_TRUE(writeAll(pipe.in, kContent));
    std::string place(4, '-');

    EXPECT_FALSE(readSideBySide(pipe.out, "pipe", place, 4, 2));
    std::array<char, 1> next{};
    EXPECT_EQ(readSome(pipe.out, next.data(), 1), 1);
    EXPECT_EQ(next.front(), kContent.front());
}

TEST_F(ReadSideBySideTest, ReportsAReadingError)
{
    const FailingCalls failing(Call::ReadAt, EIO, 1, 2);

    EXPECT_EQ(failureOf([&] { readBytes(kContent.size(), 1); }),
              about(path("a"), "cannot be read: Input/output error."));
}

TEST_F(ReadSideBySideTest, IsNotInterruptedBySignals)
{
    const FailingCalls failing(Call::ReadAt, EINTR, 2, 1);

    EXPECT_EQ(readBytes(kContent.size(), 1), kContent);
    EXPECT_EQ(failing.failed(), 2);
}

}  // namespace
}  // namespace dunmora::test
