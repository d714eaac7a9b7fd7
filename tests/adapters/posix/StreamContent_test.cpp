#include "adapters/posix/StreamContent.h"

#include "tests/adapters/posix/FileTest.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <string>
#include <thread>

namespace dunmora::test {
namespace {

class StreamContentTest : public FileTest {};

constexpr std::uintmax_t kMebibyte = 1U << 20U;

TEST_F(StreamContentTest, IsEverythingThatIsWrittenIntoAPipe)
{
    auto pipe = openPipe();
    std::string content;
    for (int i = 0; content.size() < 300'000; ++i) {
        content += std::to_string(i);
    }
    std::thread writer([&] {
        EXPECT_TRUE(writeAll(pipe.in, content));
        pipe.in = Descriptor();
    });

    const auto bytes = readStream(pipe.out, "pipe", kMebibyte);

    writer.join();
    EXPECT_EQ(bytes.view(), content);
}

TEST_F(StreamContentTest, MayBeEmpty)
{
    auto pipe = openPipe();
    pipe.in = Descriptor();

    EXPECT_EQ(readStream(pipe.out, "pipe", kMebibyte).view(), "");
}

TEST_F(StreamContentTest, IsRefusedWhenItIsLargerThanAllowed)
{
    write(path("a"), std::string(kMebibyte + 1, 'a'));

    EXPECT_EQ(readStreamAt(path("a"), kMebibyte + 1).view().size(), kMebibyte + 1);
    EXPECT_EQ(failureOf([&] { readStreamAt(path("a"), kMebibyte); }),
              about(path("a"), "is too large: Dunmora can read at most 1 MiB of it."));
    // A device without an end.
    EXPECT_EQ(failureOf([] { readStreamAt("/dev/zero", kMebibyte); }),
              about("/dev/zero", "is too large: Dunmora can read at most 1 MiB of it."));
}

TEST_F(StreamContentTest, WaitsForTheWriterOfANamedPipe)
{
    ASSERT_EQ(mkfifo(path("pipe").c_str(), 0600), 0);
    std::thread writer([&] { write(path("pipe"), "late"); });

    const auto bytes = readStreamAt(path("pipe"), kMebibyte);

    writer.join();
    EXPECT_EQ(bytes.view(), "late");
}

TEST_F(StreamContentTest, IsNotTakenForEmptyWhenItCannotBeRead)
{
    EXPECT_EQ(failureOf([&] { readStreamAt(path("none"), kMebibyte); }),
              about(path("none"), "cannot be read: No such file or directory."));
    EXPECT_EQ(failureOf([&] { readStreamAt(path(""), kMebibyte); }),
              about(path(""), "cannot be read: Is a directory."));
}

}  // namespace
}  // namespace dunmora::test
