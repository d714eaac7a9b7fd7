#include "adapters/qt/RememberedText.h"

#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace dunmora::test {
namespace {

using Numbers = std::vector<int>;

TEST(RememberedText, HoldsNumbers)
{
    const std::array numbers{1280, -20, 0};

    const auto text = numbersText(numbers);

    EXPECT_EQ(text, "1280 -20 0");
    EXPECT_EQ(numbersIn(text, 3), (Numbers{1280, -20, 0}));
}

TEST(RememberedText, HoldsNoOtherNumberOfNumbers)
{
    EXPECT_EQ(numbersIn("1 2", 1), std::nullopt);
    EXPECT_EQ(numbersIn("1 2", 3), std::nullopt);
    EXPECT_EQ(numbersIn("", 2), std::nullopt);
    EXPECT_EQ(numbersIn(std::string(1'000'000, ' '), 2), std::nullopt);
}

class RememberedTextDamageTest : public testing::TestWithParam<const char*> {};
TEST_P(RememberedTextDamageTest, HoldsNoNumbers)
{
    EXPECT_EQ(numbersIn(GetParam(), 2), std::nullopt);
}
INSTANTIATE_TEST_SUITE_P(Texts, RememberedTextDamageTest,
                         testing::Values("800 x", "x 600", "800x600", "800,600", "800  600",
                                         " 800 600", "8e2 600", "800.5 600", "+800 600", "0x10 600",
                                         "100001 600", "600 -100001", "99999999999999999999 600",
                                         "- 600"));

TEST(RememberedText, HoldsTheWidthsOfColumns)
{
    const ColumnWidths widths{{"fname", 120}, {"check", 30}};

    EXPECT_EQ(widthsText(widths), "check:30 fname:120");
    EXPECT_EQ(widthsIn("check:30 fname:120"), widths);
    EXPECT_EQ(widthsText({}), "");
    EXPECT_EQ(widthsIn(""), ColumnWidths());
}

TEST(RememberedText, IgnoresDamagedWidths)
{
    EXPECT_EQ(widthsIn("a:1 b c: d:x e:0 f:-5 g:100001 :9 h:2  i:3:4 j:5 "),
              (ColumnWidths{{"a", 1}, {"h", 2}, {"j", 5}}));
}

}  // namespace
}  // namespace dunmora::test
