#include "ui/NamePrefix.h"

#include "tests/fakes/FakeTextFolding.h"

#include <gtest/gtest.h>

namespace dunmora::test {

namespace {

const FakeTextFolding kFolding;

TEST(NamePrefix, IsFoundAtTheBeginningInAnyCase)
{
    const NamePrefix prefix("aN", kFolding);

    EXPECT_TRUE(prefix.begins("Ann"));
    EXPECT_TRUE(prefix.begins("AN"));
    EXPECT_FALSE(prefix.begins("Joan"));
    EXPECT_FALSE(prefix.begins("A"));
    EXPECT_FALSE(prefix.begins(""));
}

TEST(NamePrefix, IsFoundBeyondAscii)
{
    EXPECT_TRUE(NamePrefix("\u00EB", kFolding).begins("\u00CBlodie"));
    EXPECT_TRUE(NamePrefix("\u00EB", kFolding).begins("E\u0308lodie"));
    EXPECT_TRUE(NamePrefix("zo", kFolding).begins("Zo\u00EB"));
    EXPECT_FALSE(NamePrefix("zoe", kFolding).begins("Zo\u00EB"));
    EXPECT_FALSE(NamePrefix("\u00EB", kFolding).begins("Elodie"));
}

}  // namespace

}  // namespace dunmora::test
