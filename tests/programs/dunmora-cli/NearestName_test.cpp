#include "programs/dunmora-cli/NearestName.h"

#include <gtest/gtest.h>

#include <vector>

namespace dunmora::test {
namespace {

const std::vector<std::string> kNames{"list", "delete", "--format", "--check", "--uncheck"};

TEST(NearestName, FindsANameWithAChangedAddedMissingOrSwappedLetter)
{
    for (const auto* const typed : {"lost", "lists", "lst", "ilst", "lits"}) {
        EXPECT_EQ(nearestName(typed, kNames), "list") << typed;
    }
}

TEST(NearestName, AllowsMoreSlipsInALongName)
{
    EXPECT_EQ(nearestName("deelt", kNames), "delete");
    EXPECT_EQ(nearestName("lit5", kNames), "");
    EXPECT_EQ(nearestName("dlt", kNames), "");
}

TEST(NearestName, IgnoresCaseAndDashes)
{
    EXPECT_EQ(nearestName("LIST", kNames), "list");
    EXPECT_EQ(nearestName("-format", kNames), "--format");
    EXPECT_EQ(nearestName("format", kNames), "--format");
    EXPECT_EQ(nearestName("---Formt", kNames), "--format");
}

TEST(NearestName, PrefersTheNearest)
{
    EXPECT_EQ(nearestName("--chek", kNames), "--check");
    EXPECT_EQ(nearestName("--unchek", kNames), "--uncheck");
}

TEST(NearestName, FindsNothingFarAway)
{
    EXPECT_EQ(nearestName("", kNames), "");
    EXPECT_EQ(nearestName("--", kNames), "");
    EXPECT_EQ(nearestName("tidy", kNames), "");
    EXPECT_EQ(nearestName(std::string(1'000'000, 'l'), kNames), "");
    EXPECT_EQ(nearestName("list", {}), "");
}

}  // namespace
}  // namespace dunmora::test
