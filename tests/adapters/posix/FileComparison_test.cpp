#include "adapters/posix/FileComparison.h"

#include "tests/adapters/posix/FailingCalls.h"
#include "tests/adapters/posix/FileTest.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <cstddef>
#include <string>
#include <string_view>

#include <fcntl.h>

namespace dunmora::test {
namespace {

class FileComparisonTest : public FileTest {
protected:
    /// Every letter of `kContent` is another one.
    static constexpr std::string_view kContent = "abcdefghijklmnopqrstuvwxyz";

    FileComparisonTest() { write(path("a"), kContent); }

    bool has(const Pieces& content, ComparisonMethod method = {4, 2})
    {
        return hasContent(openFile(path("a"), O_RDONLY), content, path("a"), method);
    }
};

TEST_F(FileComparisonTest, FindsTheSameContentInPartsAndPiecesOfEverySize)
{
    for (std::size_t partSize = 1; partSize <= kContent.size() + 1; ++partSize) {
        for (std::size_t cut = 0; cut <= kContent.size(); ++cut) {
            for (const std::size_t threads : {1, 3}) {
                const Pieces content{kContent.substr(0, cut), "", kContent.substr(cut)};

                EXPECT_TRUE(has(content, {partSize, threads})) << partSize << " " << cut;
            }
        }
    }
}

TEST_F(FileComparisonTest, FindsEveryByteThatDiffers)
{
    for (std::size_t i = 0; i < kContent.size(); ++i) {
        std::string other(kContent);
        other[i] = '-';
        const auto text = std::string_view(other);

        EXPECT_FALSE(has({text})) << i;
        EXPECT_FALSE(has({text.substr(0, 7), text.substr(7)})) << i;
    }
}

TEST_F(FileComparisonTest, FindsThatTheFileIsLongerOrShorter)
{
    EXPECT_FALSE(has({kContent.substr(0, kContent.size() - 1)}));
    EXPECT_FALSE(has({kContent, "-"}));
    EXPECT_FALSE(has({}));
}

TEST_F(FileComparisonTest, FindsAnEmptyFileWithoutContent)
{
    write(path("a"), "");

    EXPECT_TRUE(has({}));
    EXPECT_TRUE(has({""}));
}

TEST_F(FileComparisonTest, NamesAFileThatCannotBeRead)
{
    for (const int successes : {0, 3}) {
        const FailingCalls failing(Call::ReadAt, EIO, 1, successes);

        const auto failure = failureOf([&] { has({kContent}); });

        EXPECT_NE(failure.find("a” cannot be read"), std::string::npos) << failure;
    }
}

TEST_F(FileComparisonTest, ContinuesAfterAnInterruption)
{
    const FailingCalls failing(Call::ReadAt, EINTR);

    EXPECT_TRUE(has({kContent}));
    EXPECT_EQ(failing.failed(), 1);
}

TEST_F(FileComparisonTest, ComparesLargeFiles)
{
    std::string large;
    while (large.size() < (std::size_t{9} << 20U)) {
        large += std::to_string(large.size());
    }
    write(path("a"), large);
    const auto file = openFile(path("a"), O_RDONLY);

    EXPECT_TRUE(hasContent(file, {large}, path("a")));
    large.back() = '-';
    EXPECT_FALSE(hasContent(file, {large}, path("a")));
}

}  // namespace
}  // namespace dunmora::test
