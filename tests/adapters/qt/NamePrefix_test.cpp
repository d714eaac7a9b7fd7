#include "adapters/qt/NamePrefix.h"

#include <gtest/gtest.h>

namespace dunmora::test {

namespace {

TEST(NamePrefix, IsFoundAtTheBeginningInAnyCase)
{
    const NamePrefix prefix(QStringLiteral("aN"));

    EXPECT_TRUE(prefix.begins("Ann"));
    EXPECT_TRUE(prefix.begins("AN"));
    EXPECT_FALSE(prefix.begins("Joan"));
    EXPECT_FALSE(prefix.begins("A"));
    EXPECT_FALSE(prefix.begins(""));
}

TEST(NamePrefix, IsFoundInEveryScript)
{
    EXPECT_TRUE(NamePrefix(QStringLiteral(u"\u00E9")).begins("\xC3\x89lodie"));
    EXPECT_TRUE(NamePrefix(QStringLiteral(u"\u00E9")).begins("E\xCC\x81lodie"));
    EXPECT_TRUE(NamePrefix(QStringLiteral("zo")).begins("Zo\xC3\xAB"));
    EXPECT_FALSE(NamePrefix(QStringLiteral("zoe")).begins("Zo\xC3\xAB"));
    EXPECT_TRUE(NamePrefix(QStringLiteral("k")).begins("\xE2\x84\xAA"));
}

}  // namespace

}  // namespace dunmora::test
