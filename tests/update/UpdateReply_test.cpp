#include "update/UpdateReply.h"

#include "tests/fakes/ChildProcess.h"
#include "tests/fakes/TemporaryFolder.h"

#include <unistd.h>

#include <gtest/gtest.h>

#include <clocale>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <locale>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace dunmora::test {

namespace {

using namespace std::string_literals;

const std::optional<std::string> kRunning = "1.5";

bool isUnreadable(std::string_view body)
{
    return std::holds_alternative<UnreadableReply>(judgeUpdateReply(body, kRunning));
}

bool isUpToDate(std::string_view body, const std::optional<std::string>& running)
{
    return std::holds_alternative<UpToDate>(judgeUpdateReply(body, running));
}

struct NumberLocale {
    std::string name;
    /// 1.5 as this locale writes it.
    std::string oneAndAHalf;
};

/// Compiles the locale from its source. Returns what went wrong; empty when it worked.
std::string compileLocale(const std::string& name, const std::filesystem::path& folder)
{
    return inChild([&] {
        const auto compiled = (folder / name).string();
        ::execlp("localedef", "localedef", "-i", name.c_str(), "-f", "UTF-8", compiled.c_str(),
                 nullptr);
        return "no localedef"s;
    });
}

/// Reads versions in a process with this locale. Returns those that are read differently there.
std::string differencesIn(const NumberLocale& locale, const std::filesystem::path& folder)
{
    return inChild([&] {
        // NOLINTNEXTLINE(concurrency-mt-unsafe): the process has one thread
        ::setenv("LOCPATH", folder.c_str(), 1);
        // A named locale also becomes the C library's.
        std::locale::global(std::locale(locale.name));
        std::string found;
        // NOLINTNEXTLINE(concurrency-mt-unsafe): the process has one thread
        const bool isTheCLibrarys = std::setlocale(LC_ALL, nullptr) == locale.name;
        if (!isTheCLibrarys || std::strtod(locale.oneAndAHalf.c_str(), nullptr) != 1.5) {
            found += "the locale is not in force; ";
        }
        for (const auto& [text, number] : std::map<std::string, double>{{"1.5", 1.5},
                                                                        {"1,5", 1},
                                                                        {"1٫5", 1},
                                                                        {"1,000", 1},
                                                                        {"1.000.5", 1},
                                                                        {"1.5e1", 15}}) {
            if (versionNumber(text) != number) {
                found += text + "; ";
            }
        }
        return found;
    });
}

class VersionNumberInLocale : public testing::TestWithParam<NumberLocale> {};

}  // namespace

TEST(UpdateReply, OffersAGreaterVersionWithItsAddressAndMessage)
{
    const auto reply = judgeUpdateReply("1.6\nURL\nText", kRunning);

    const auto& newer = std::get<NewerVersion>(reply);
    EXPECT_EQ(newer.downloadUrl, "URL");
    EXPECT_EQ(newer.message, "Text");
}

TEST(UpdateReply, IsUpToDateWithTheSameVersionAndKeepsTheAddress)
{
    const auto reply = judgeUpdateReply("1.5\nURL\nText", kRunning);

    EXPECT_EQ(std::get<UpToDate>(reply).downloadUrl, "URL");
}

TEST(UpdateReply, IsUpToDateWithALowerVersion)
{
    EXPECT_TRUE(isUpToDate("1.4\nURL\nText", kRunning));
}

TEST(UpdateReply, IsUnreadableWithALineFeedAfterTheThirdLine)
{
    EXPECT_TRUE(isUnreadable("1.6\nURL\nText\n"));
}

TEST(UpdateReply, IsUnreadableWithAnyOtherNumberOfLines)
{
    EXPECT_TRUE(isUnreadable("1.6"));
    EXPECT_TRUE(isUnreadable("1.6\nURL"));
    EXPECT_TRUE(isUnreadable("1.6\nURL\nText\nmore"));
}

TEST(UpdateReply, IsUnreadableWhenEmpty)
{
    EXPECT_TRUE(isUnreadable(""));
}

TEST(UpdateReply, KeepsACarriageReturnInTheAddress)
{
    const auto reply = judgeUpdateReply("1.6\r\nURL\r\nText", kRunning);

    const auto& newer = std::get<NewerVersion>(reply);
    EXPECT_EQ(newer.downloadUrl, "URL\r");
    EXPECT_EQ(newer.message, "Text");
}

TEST(UpdateReply, AcceptsEmptyLines)
{
    const auto reply = judgeUpdateReply("1.6\n\n", kRunning);

    const auto& newer = std::get<NewerVersion>(reply);
    EXPECT_EQ(newer.downloadUrl, "");
    EXPECT_EQ(newer.message, "");
    EXPECT_TRUE(isUpToDate("\n\n", kRunning));
}

TEST(UpdateReply, TrimsNothing)
{
    const auto reply = judgeUpdateReply("  1.6 beta \n URL \n Text ", kRunning);

    const auto& newer = std::get<NewerVersion>(reply);
    EXPECT_EQ(newer.downloadUrl, " URL ");
    EXPECT_EQ(newer.message, " Text ");
}

TEST(UpdateReply, IsUnreadableWhenItIsNotUtf8)
{
    EXPECT_TRUE(isUnreadable("1.6\nURL\nGr\xFC\xDF"
                             "e"));
    // An overlong form, a surrogate, above U+10FFFF, truncated.
    EXPECT_TRUE(isUnreadable("1.6\nURL\n\xC0\xAF"));
    EXPECT_TRUE(isUnreadable("1.6\nURL\n\xED\xA0\x80"));
    EXPECT_TRUE(isUnreadable("1.6\nURL\n\xF4\x90\x80\x80"));
    EXPECT_TRUE(isUnreadable("1.6\nURL\n\xF0\x9F\x98"));
}

TEST(UpdateReply, AcceptsAReplacementCharacterThatTheServiceSent)
{
    const auto reply = judgeUpdateReply("1.6\nURL\n\xEF\xBF\xBD", kRunning);

    EXPECT_EQ(std::get<NewerVersion>(reply).message, "\xEF\xBF\xBD");
}

TEST(UpdateReply, TreatsANullCharacterAsText)
{
    const auto reply = judgeUpdateReply("1.6\nU\0RL\nText"s, kRunning);

    EXPECT_EQ(std::get<NewerVersion>(reply).downloadUrl, "U\0RL"s);
}

TEST(UpdateReply, TreatsOnePointTenAsOlderThanOnePointNine)
{
    EXPECT_TRUE(isUpToDate("1.10\nURL\nText", "1.9"));
}

TEST(UpdateReply, IgnoresAThirdComponent)
{
    EXPECT_TRUE(isUpToDate("2.0.1\nURL\nText", "2.0"));
}

TEST(UpdateReply, NeverOffersALineWithoutANumber)
{
    EXPECT_TRUE(isUpToDate("abc\nURL\nText", "0"));
    EXPECT_TRUE(isUpToDate("abc\nURL\nText", std::nullopt));
}

TEST(UpdateReply, OffersAnyPositiveVersionWhenTheRunningOneIsUnknown)
{
    EXPECT_FALSE(isUpToDate("0.1\nURL\nText", std::nullopt));
    EXPECT_TRUE(isUpToDate("0\nURL\nText", std::nullopt));
}

TEST(VersionNumber, ReadsTheLongestPrefixThatIsADecimalNumber)
{
    EXPECT_EQ(versionNumber("1.5"), 1.5);
    EXPECT_EQ(versionNumber("1.5.9"), 1.5);
    EXPECT_EQ(versionNumber("12 beta"), 12);
    EXPECT_EQ(versionNumber("7."), 7);
    EXPECT_EQ(versionNumber(".5"), 0.5);
    EXPECT_EQ(versionNumber("1,5"), 1);
    EXPECT_EQ(versionNumber("1'000"), 1);
}

TEST(VersionNumber, SkipsWhiteSpaceBeforeTheNumberOnly)
{
    EXPECT_EQ(versionNumber(" \t\r\n\v\f1.5"), 1.5);
    EXPECT_EQ(versionNumber("- 1"), 0);
}

TEST(VersionNumber, ReadsOneSign)
{
    EXPECT_EQ(versionNumber("+1.5"), 1.5);
    EXPECT_EQ(versionNumber("-1.5"), -1.5);
    EXPECT_EQ(versionNumber("+-1"), 0);
    EXPECT_EQ(versionNumber("--1"), 0);
}

TEST(VersionNumber, ReadsAnExponentWhenItHasDigits)
{
    EXPECT_EQ(versionNumber("1e2"), 100);
    EXPECT_EQ(versionNumber("1E+2"), 100);
    EXPECT_EQ(versionNumber("15e-1x"), 1.5);
    EXPECT_EQ(versionNumber("1e"), 1);
    EXPECT_EQ(versionNumber("1e+"), 1);
    EXPECT_EQ(versionNumber("1ex5"), 1);
    EXPECT_EQ(versionNumber("e5"), 0);
    EXPECT_EQ(versionNumber(".e5"), 0);
}

TEST(VersionNumber, IsZeroWithoutANumber)
{
    for (const auto* const text :
         {"", " ", "abc", ".", "-", "+.", "v1.5", "inf", "-inf", "infinity", "nan", "NAN(1)"}) {
        EXPECT_EQ(versionNumber(text), 0) << text;
    }
}

TEST(VersionNumber, IsNeverHexadecimal)
{
    EXPECT_EQ(versionNumber("0x1F"), 0);
    EXPECT_EQ(versionNumber("0x1p4"), 0);
}

TEST(VersionNumber, IsTheLargestDoubleOnOverflow)
{
    constexpr auto kLargest = std::numeric_limits<double>::max();

    EXPECT_EQ(versionNumber("1e999"), kLargest);
    EXPECT_EQ(versionNumber("-1e999"), -kLargest);
    EXPECT_EQ(versionNumber("1e9223372036854775807"), kLargest);
    EXPECT_EQ(versionNumber("1e99999999999999999999999"), kLargest);
    EXPECT_EQ(versionNumber(std::string(400, '9')), kLargest);
    EXPECT_EQ(versionNumber("0." + std::string(300, '0') + "1e999"), kLargest);
    EXPECT_EQ(versionNumber("1.7976931348623157e308"), kLargest);
    EXPECT_EQ(versionNumber("1.7976931348623159e308"), kLargest);
}

TEST(VersionNumber, IsZeroOnUnderflow)
{
    EXPECT_EQ(versionNumber("1e-999"), 0);
    EXPECT_EQ(versionNumber("1e-9223372036854775807"), 0);
    EXPECT_EQ(versionNumber("1e-99999999999999999999999"), 0);
    EXPECT_EQ(versionNumber("0." + std::string(400, '0') + "1"), 0);
    EXPECT_EQ(versionNumber("0e99999999999999999999999"), 0);
}

TEST(VersionNumber, IsTheDoubleNearestToTheText)
{
    EXPECT_EQ(versionNumber("0.1"), 0.1);
    EXPECT_EQ(versionNumber("9007199254740993"), 9007199254740992.0) << "halfway, to the even one";
    EXPECT_EQ(versionNumber("9007199254740993." + std::string(800, '0') + "1"), 9007199254740994.0);
    EXPECT_EQ(versionNumber("2.2250738585072011e-308"), 0x0.fffffffffffffp-1022);
    EXPECT_EQ(versionNumber("4.9e-324"), std::numeric_limits<double>::denorm_min());
}

TEST_P(VersionNumberInLocale, DoesNotChangeTheNumber)
{
    const TemporaryFolder folder;
    ASSERT_EQ(compileLocale(GetParam().name, folder.path()), "");

    EXPECT_EQ(differencesIn(GetParam(), folder.path()), "");
}

// A decimal comma, Arabic with a decimal point, and the one locale with the Arabic decimal
// separator.
INSTANTIATE_TEST_SUITE_P(Languages, VersionNumberInLocale,
                         testing::Values(NumberLocale{"de_DE", "1,5"}, NumberLocale{"ar_EG", "1.5"},
                                         NumberLocale{"ps_AF", "1٫5"}),
                         [](const auto& each) { return each.param.name.substr(0, 2); });

}  // namespace dunmora::test
