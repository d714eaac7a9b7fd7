#include "programs/dunmora-cli/TerminalText.h"

#include <gtest/gtest.h>

#include <clocale>

namespace dunmora::test {
namespace {

TEST(DisplayWidth, CountsTheColumnsOfATerminal)
{
    EXPECT_EQ(displayWidth(""), 0U);
    EXPECT_EQ(displayWidth("Ann"), 3U);
    EXPECT_EQ(displayWidth("Zoë"), 3U);
    EXPECT_EQ(displayWidth("Zoe\u0308"), 3U);
    EXPECT_EQ(displayWidth("王小明"), 6U);
    EXPECT_EQ(displayWidth("😀"), 2U);
    EXPECT_EQ(displayWidth("␛\uFFFD"), 2U);
}

TEST(DisplayWidth, DoesNotDependOnTheUsersLocale)
{
    const std::string before = std::setlocale(LC_ALL, nullptr);  // NOLINT(concurrency-mt-unsafe)
    std::setlocale(LC_ALL, "C");                                 // NOLINT(concurrency-mt-unsafe)

    EXPECT_EQ(displayWidth("王"), 2U);

    std::setlocale(LC_ALL, before.c_str());  // NOLINT(concurrency-mt-unsafe)
}

TEST(DisplayWidth, CountsNoColumnForMarksThatJoinALetter)
{
    EXPECT_EQ(displayWidth("يوسف"), 4U);
    EXPECT_EQ(displayWidth("يُوسُف"), 4U);
}

TEST(WithoutEnd, PutsAnEllipsisInPlaceOfWhatDoesNotFit)
{
    EXPECT_EQ(withoutEnd("Annabel", 7), "Annabel");
    EXPECT_EQ(withoutEnd("Annabel", 6), "Annab…");
    EXPECT_EQ(withoutEnd("王小明", 6), "王小明");
    EXPECT_EQ(withoutEnd("王小明", 5), "王小…");
    EXPECT_EQ(withoutEnd("王小明", 4), "王…");
    EXPECT_EQ(withoutEnd("😀😀😀", 5), "😀😀…");
}

TEST(WithoutEnd, KeepsTheMarksOfItsLastLetter)
{
    EXPECT_EQ(withoutEnd("Zoe\u0308la", 4), "Zoe\u0308…");
    EXPECT_EQ(withoutEnd("يُوسُف", 3), "يُو…");
}

TEST(WithoutBeginning, KeepsTheLastDigits)
{
    EXPECT_EQ(withoutBeginning("+44 131 496 0617", 16), "+44 131 496 0617");
    EXPECT_EQ(withoutBeginning("+44 131 496 0617", 12), "…31 496 0617");
    EXPECT_EQ(withoutBeginning("+44 131 496 0617", 9), "…496 0617");
    EXPECT_EQ(withoutBeginning("+44 131 496 0617", 10), "…496 0617") << "no space in front";
}

TEST(WithoutBeginning, NeverBeginsWithAMark)
{
    EXPECT_EQ(withoutBeginning("Ze\u0308oe", 3), "…oe");
    EXPECT_EQ(withoutBeginning("王小明", 4), "…明");
}

TEST(TakeLine, BreaksAtASpaceWhereThereIsOne)
{
    std::string_view text = "Maria del Carmen";
    EXPECT_EQ(takeLine(text, 9), "Maria del");
    EXPECT_EQ(takeLine(text, 9), "Carmen");
    EXPECT_EQ(text, "");

    text = "Maria del Carmen";
    EXPECT_EQ(takeLine(text, 8), "Maria");
    EXPECT_EQ(text, "del Carmen");
}

TEST(TakeLine, BreaksAWordThatDoesNotFitAndAlwaysTakesSomething)
{
    std::string_view text = "Annabel";
    EXPECT_EQ(takeLine(text, 4), "Anna");
    EXPECT_EQ(text, "bel");

    text = "王小";
    EXPECT_EQ(takeLine(text, 1), "王");
    EXPECT_EQ(takeLine(text, 1), "小");

    text = " x";
    EXPECT_EQ(takeLine(text, 1), " ");
    EXPECT_EQ(text, "x");
}

}  // namespace
}  // namespace dunmora::test
