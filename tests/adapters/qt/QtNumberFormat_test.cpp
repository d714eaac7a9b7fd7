#include "adapters/qt/QtNumberFormat.h"

#include <gtest/gtest.h>

namespace dunmora::test {

namespace {

TEST(QtNumberFormat, GroupsDigitsAsTheLocaleDoes)
{
    const QtNumberFormat american{QLocale(QLocale::English, QLocale::UnitedStates)};
    const QtNumberFormat german{QLocale(QLocale::German, QLocale::Germany)};
    const QtNumberFormat swedish{QLocale(QLocale::Swedish, QLocale::Sweden)};
    const QtNumberFormat indian{QLocale(QLocale::English, QLocale::India)};

    EXPECT_EQ(american.grouped(0), "0");
    EXPECT_EQ(american.grouped(999), "999");
    EXPECT_EQ(american.grouped(1'000), "1,000");
    EXPECT_EQ(american.grouped(1'234'567), "1,234,567");
    EXPECT_EQ(german.grouped(1'234'567), "1.234.567");
    EXPECT_EQ(swedish.grouped(1'234), "1\u00A0234");
    EXPECT_EQ(indian.grouped(1'234'567), "12,34,567");
}

}  // namespace

}  // namespace dunmora::test
