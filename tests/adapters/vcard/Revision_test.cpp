#include "adapters/vcard/Revision.h"

#include <gtest/gtest.h>

#include <optional>
#include <string_view>

namespace dunmora::test {

namespace {

std::optional<long long> revision(std::string_view text)
{
    const auto date = readRevision(text);
    return date ? std::optional(static_cast<long long>(date->time_since_epoch().count()))
                : std::nullopt;
}

TEST(Revision, IsReadInBasicAndExtendedForm)
{
    for (const auto* text :
         {"20240501T100000Z", "2024-05-01T10:00:00Z", "2024-05-01T10:00:00", "20240501T100000",
          "2024-05-01t10:00:00z", " 2024-05-01T10:00:00Z ", "2024-05-01T10:00:00.999Z",
          "20240501T100000,5Z", "2024-05-01T12:00:00+02:00", "20240501T053000-0430",
          "2024-05-01T08:00:00-02"}) {
        EXPECT_EQ(revision(text), 1714557600) << text;
    }
}

TEST(Revision, IsMidnightUtcWhenItIsOnlyADate)
{
    EXPECT_EQ(revision("2024-05-01"), 1714521600);
    EXPECT_EQ(revision("20240501"), 1714521600);
}

TEST(Revision, IsEmptyWhenItCannotBeRead)
{
    for (const auto* text :
         {"", "yesterday", "2024", "2024-13-01", "2024-02-30", "20240501T", "20240501T10",
          "20240501T250000Z", "20240501T106000Z", "20240501T100000Zulu", "2024-05-01 10:00:00",
          "20240501T100000+99", "20240501T100000+", "2024-05-01T10:00:00Z2",
          "0000-01-01T00:00:00+01:00", "9999-12-31T23:59:59-01:00"}) {
        EXPECT_EQ(revision(text), std::nullopt) << text;
    }
}

TEST(Revision, AcceptsALeapSecond)
{
    EXPECT_EQ(revision("2016-12-31T23:59:60Z"), revision("2017-01-01T00:00:00Z"));
}

}  // namespace

}  // namespace dunmora::test
