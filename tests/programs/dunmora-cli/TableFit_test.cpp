#include "programs/dunmora-cli/TableFit.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <optional>
#include <vector>

namespace dunmora::test {
namespace {

using Widths = std::vector<std::size_t>;

constexpr std::size_t kGap = 2;

ColumnNeed column(std::size_t width, std::size_t least)
{
    return {.width = width, .least = least};
}

ColumnNeed essential(std::size_t width, std::size_t least)
{
    return {.width = width, .least = least, .isEssential = true};
}

ColumnNeed expendable(std::size_t place, std::size_t width, std::size_t least)
{
    return {.width = width, .least = least, .sacrifice = place};
}

TEST(FittingWidths, LeaveColumnsAloneThatFit)
{
    EXPECT_EQ(fittingWidths({column(10, 4), column(0, 0), expendable(0, 20, 20)}, 32, kGap),
              (Widths{10, 0, 20}));
}

TEST(FittingWidths, LeaveOutTheFirstSacrificeBeforeAnythingIsNarrowed)
{
    EXPECT_EQ(fittingWidths({column(10, 4), expendable(1, 10, 4), expendable(0, 20, 20)}, 43, kGap),
              (Widths{10, 10, 0}));
}

TEST(FittingWidths, NarrowTheWidestColumns)
{
    EXPECT_EQ(fittingWidths({column(5, 4), column(17, 8), column(16, 8)}, 29, kGap),
              (Widths{5, 10, 10}));
}

TEST(FittingWidths, NarrowEssentialColumnsLast)
{
    EXPECT_EQ(fittingWidths({essential(20, 8), column(10, 4)}, 26, kGap), (Widths{20, 4}));
    EXPECT_EQ(fittingWidths({essential(20, 8), column(10, 4)}, 16, kGap), (Widths{10, 4}));
}

TEST(FittingWidths, LeaveOutWhatCannotBeNarrowedEnough)
{
    EXPECT_EQ(fittingWidths({column(10, 10), expendable(2, 10, 8), expendable(1, 10, 8)}, 21, kGap),
              (Widths{10, 9, 0}));
}

TEST(FittingWidths, DoNotExistWhereTheRestDoesNotFit)
{
    EXPECT_EQ(fittingWidths({column(10, 10), expendable(0, 10, 8)}, 9, kGap), std::nullopt);
}

}  // namespace
}  // namespace dunmora::test
