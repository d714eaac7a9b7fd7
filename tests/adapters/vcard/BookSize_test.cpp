#include "adapters/vcard/BookSize.h"

#include "tests/adapters/vcard/BookTest.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>

namespace dunmora::test {
namespace {

constexpr auto kMebibyte = std::uintmax_t{1} << 20U;
constexpr auto kGibibyte = 1024 * kMebibyte;

class BookSizeTest : public BookTest {
protected:
    /// Writes a file of this size, nearly all of which is a hole.
    static void writeSparse(const std::filesystem::path& path, std::uintmax_t size)
    {
        write(path, card("a"));
        std::filesystem::resize_file(path, size);
    }

    static std::string failureOfReading(const std::filesystem::path& path, std::uintmax_t largest)
    {
        return failureOf([&] { VCardAddressBook(path, largest).readPeople(); });
    }

    static std::string tooLarge(const std::filesystem::path& path, const std::string& size,
                                const std::string& largest)
    {
        return about(path, "is too large: it has " + size +
                               " MiB, and on this computer Dunmora can read at most " + largest +
                               " MiB.");
    }
};

TEST_F(BookSizeTest, IsAtMostAQuarterOfTheMemoryAndFourGibibytes)
{
    EXPECT_EQ(largestBookSize(2 * kGibibyte), kGibibyte / 2);
    EXPECT_EQ(largestBookSize(64 * kGibibyte), 4 * kGibibyte);
}

TEST_F(BookSizeTest, IsLimitedByThisComputer)
{
    EXPECT_GT(largestBookSize(), 0U);
    writeSparse(file(), 4 * kGibibyte + 1);

    const auto failure = failureOf([&] { VCardAddressBook(file()).readPeople(); });
    EXPECT_EQ(failure, tooLarge(file(), "4097", std::to_string(largestBookSize() / kMebibyte)));
}

TEST_F(BookSizeTest, IsCheckedBeforeAnythingIsRead)
{
    writeSparse(file(), 2 * kGibibyte);
    // Reading it would fail with another message.
    std::filesystem::permissions(file(), std::filesystem::perms::none);

    EXPECT_EQ(failureOfReading(file(), kGibibyte), tooLarge(file(), "2048", "1024"));
}

TEST_F(BookSizeTest, MayReachTheLimit)
{
    writeSparse(file(), kMebibyte);

    EXPECT_EQ(failureOfReading(file(), kMebibyte), kNothingThrown);
    EXPECT_EQ(failureOfReading(file(), kMebibyte - 1), tooLarge(file(), "1", "0"));
}

TEST_F(BookSizeTest, IsTheSumOfTheFilesOfAFolder)
{
    writeSparse(folder() / "a.vcf", kMebibyte);
    writeSparse(folder() / "b.vcf", kMebibyte);
    writeSparse(folder() / "not-a-card.txt", kGibibyte);

    EXPECT_EQ(failureOfReading(folder(), 2 * kMebibyte), kNothingThrown);
    EXPECT_EQ(failureOfReading(folder(), 2 * kMebibyte - 1), tooLarge(folder(), "2", "1"));
}

TEST_F(BookSizeTest, CountsAFileWithSeveralNamesOnce)
{
    writeSparse(folder() / "a.vcf", kMebibyte);
    std::filesystem::create_hard_link(folder() / "a.vcf", folder() / "b.vcf");
    std::filesystem::create_symlink("a.vcf", folder() / "c.vcf");

    EXPECT_EQ(failureOfReading(folder(), kMebibyte), kNothingThrown);
}

}  // namespace
}  // namespace dunmora::test
