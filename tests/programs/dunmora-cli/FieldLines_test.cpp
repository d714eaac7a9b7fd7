#include "programs/dunmora-cli/FieldLines.h"

#include <gtest/gtest.h>

#include <string>

namespace dunmora::test {
namespace {

using Break = FieldLines::Break;

std::string appended(const FieldLines& lines)
{
    std::string out;
    lines.append(out, "[x]  ");
    return out;
}

TEST(FieldLines, PutEachValueBesideItsTitle)
{
    FieldLines lines(40, "     ");
    lines.add("First Name", "美咲", Break::WhereNeeded);
    lines.add("Nickname", "", Break::WhereNeeded);
    lines.add("UID", "u-1", Break::Never);

    EXPECT_EQ(appended(lines), "[x]  First Name  美咲\n"
                               "     UID         u-1\n");
}

TEST(FieldLines, ContinueALongValueBelowItself)
{
    FieldLines lines(21, "     ");
    lines.add("Name", "Maria del Carmen", Break::WhereNeeded);

    EXPECT_EQ(appended(lines), "[x]  Name  Maria del\n"
                               "           Carmen\n");
}

TEST(FieldLines, NeverBreakWhatIsThereToBeCopied)
{
    FieldLines lines(24, "     ");
    lines.add("First Name", "Ann", Break::WhereNeeded);
    lines.add("UID", "urn:uuid:0b6f8f3e", Break::Never);

    EXPECT_EQ(appended(lines), "[x]  First Name  Ann\n"
                               "     UID\n"
                               "     urn:uuid:0b6f8f3e\n");
}

TEST(FieldLines, ShowEverythingInAWindowOfOneColumn)
{
    FieldLines lines(1, "");
    lines.add("Name", "Annabella", Break::WhereNeeded);

    std::string out;
    lines.append(out, "");
    EXPECT_EQ(out, "Name  Annabell\n"
                   "      a\n");
}

}  // namespace
}  // namespace dunmora::test
