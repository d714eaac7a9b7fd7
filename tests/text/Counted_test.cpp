#include "text/Counted.h"

#include <gtest/gtest.h>

namespace dunmora::test {
namespace {

TEST(Counted, ChoosesTheFormThatMatchesTheCount)
{
    EXPECT_EQ(counted(0, "card was skipped", "cards were skipped"), "0 cards were skipped");
    EXPECT_EQ(counted(1, "card was skipped", "cards were skipped"), "1 card was skipped");
    EXPECT_EQ(counted(2, "card was skipped", "cards were skipped"), "2 cards were skipped");
}

TEST(CountOfPeople, SaysPersonOrPeople)
{
    EXPECT_EQ(countOfPeople(1), "1 person");
    EXPECT_EQ(countOfPeople(23), "23 people");
    EXPECT_EQ(countOfPeople(12'345), "12345 people");
}

TEST(Counted, WritesTheNumberAsTheCallerDoes)
{
    const auto inWords = [](std::size_t /*number*/) { return std::string("many"); };

    EXPECT_EQ(counted(2, "card", "cards", inWords), "many cards");
    EXPECT_EQ(countOfPeople(2, inWords), "many people");
}

}  // namespace
}  // namespace dunmora::test
