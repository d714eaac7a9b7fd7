#include "programs/dunmora-cli/TimeText.h"

#include <gtest/gtest.h>

#include <chrono>
#include <string>

namespace dunmora::test {
namespace {

using std::chrono::sys_days;
using std::chrono::sys_seconds;

std::string utcText(sys_seconds time)
{
    std::string text = "at ";
    appendUtcTime(text, time);
    return text;
}

std::string localText(sys_seconds time)
{
    std::string text = "at ";
    appendLocalTime(text, time);
    return text;
}

TEST(TimeTextTest, HasTwoDigitsForEachPartAndFourForTheYear)
{
    using namespace std::chrono_literals;
    const sys_seconds time = sys_days(2024y / 5 / 1) + 3h + 4min + 5s;

    EXPECT_EQ(utcText(time), "at 2024-05-01T03:04:05Z");
    EXPECT_EQ(utcText(sys_days(987y / 12 / 31) + 23h), "at 0987-12-31T23:00:00Z");
    EXPECT_EQ(utcText(sys_days(12'345y / 10 / 11) + 10h + 20min + 30s), "at 12345-10-11T10:20:30Z");
}

TEST(TimeTextTest, ShowsLocalTimeToTheMinute)
{
    using namespace std::chrono_literals;
    const sys_seconds time = sys_days(2024y / 5 / 1) + 3h + 4min + 5s;

    // Every time zone has whole minutes in 2024.
    const auto text = localText(time);

    ASSERT_EQ(text.size(), std::string("at 2024-05-01 03:04").size());
    EXPECT_EQ(text.substr(0, 11), "at 2024-05-");
    EXPECT_EQ(text[13], ' ');
    EXPECT_EQ(text[16], ':');
}

TEST(TimeTextTest, IsEmptyForATimeThatHasNoDate)
{
    EXPECT_EQ(utcText(sys_seconds::max()), "at ");
    EXPECT_EQ(localText(sys_seconds::max()), "at ");
}

}  // namespace
}  // namespace dunmora::test
