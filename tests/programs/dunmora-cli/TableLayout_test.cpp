#include "programs/dunmora-cli/TableLayout.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace dunmora::test {
namespace {

using Lines = std::vector<std::vector<std::string>>;

std::string laidOut(TableLayout layout, const Lines& lines)
{
    std::string out;
    for (const auto& line : lines) {
        for (std::size_t i = 0; i < line.size(); ++i) {
            layout.measure(i, line[i]);
        }
    }
    for (const auto& line : lines) {
        for (std::size_t i = 0; i < line.size(); ++i) {
            layout.appendCell(out, i, line[i]);
        }
        TableLayout::endLine(out);
    }
    return out;
}

TEST(TableLayout, MakesAColumnAsWideAsItsWidestCell)
{
    EXPECT_EQ(laidOut(TableLayout(3), {{"UID", "Name", "People"}, {"beef", "王小明", "7"}}),
              "UID   Name    People\n"
              "beef  王小明  7\n");
}

TEST(TableLayout, EndsNoLineInBlanks)
{
    EXPECT_EQ(laidOut(TableLayout(3), {{"Ann", "555", "1"}, {"Ben", "", ""}}), "Ann  555  1\n"
                                                                               "Ben\n");
}

TEST(TableLayout, LetsACellThatIsTooWideOverflow)
{
    EXPECT_EQ(laidOut(TableLayout(2, 4), {{"Ann", "Lee"}, {"Benjamin", "Li"}, {"王小明", "Lu"}}),
              "Ann   Lee\n"
              "Benjamin  Li\n"
              "王小明  Lu\n");
}

}  // namespace
}  // namespace dunmora::test
