#include "review/CardLines.h"

#include "tests/review/Cards.h"

#include <gtest/gtest.h>

namespace dunmora::test {
namespace {

std::string titleOf(const CardProperty& property)
{
    return cardLines(card({property}), {}).at(0).title;
}

std::string valueOf(const CardProperty& property)
{
    return cardLines(card({property}), {}).at(0).value;
}

/// The first line of the card, compared with one kept card.
CardLine compared(const PersonCard& one, const PersonCard& kept)
{
    return cardLines(one, std::vector{kept}).at(0);
}

TEST(CardLines, AreTitledInTheUsersWords)
{
    EXPECT_EQ(titleOf(text("EMAIL", "a@b.org", "WORK")), "E-mail (work)");
    EXPECT_EQ(titleOf(text("EMAIL", "a@b.org", "INTERNET, HOME, pref")), "E-mail (home)");
    EXPECT_EQ(titleOf(text("TEL", "1", "_$!<Mobile>!$_")), "Phone (mobile)");
    EXPECT_EQ(titleOf(text("TEL", "1", "CELL, VOICE")), "Phone (mobile)");
    EXPECT_EQ(titleOf(text("TEL", "1", "iPhone")), "Phone (iPhone)");
    EXPECT_EQ(titleOf(text("TEL", "1", "VOICE")), "Phone");
    EXPECT_EQ(titleOf(text("TEL", "1", "cell, MOBILE")), "Phone (mobile)");
    EXPECT_EQ(titleOf(binary("PHOTO", "x")), "Photo");
    EXPECT_EQ(titleOf(text("X-FOO", "x")), "X-FOO");
    EXPECT_EQ(titleOf(text("X-ABDATE", "1", "_$!<Anniversary>!$_")), "Date (anniversary)");
}

TEST(CardLines, ShowValuesAsTheUserWritesThem)
{
    EXPECT_EQ(valueOf(structured("N", {"Lee", "Ann", "Marie", "Dr.", "Jr."})),
              "Dr. Ann Marie Lee Jr.");
    EXPECT_EQ(valueOf(structured("ADR", {"", "", "1 Main St", "Rome", "", "00100", ""})),
              "1 Main St, Rome, 00100");
    EXPECT_EQ(valueOf(text("NOTE", "a\nb")), "a\nb");
    EXPECT_EQ(valueOf(binary("PHOTO", std::string(12'001, 'x'))), "image/jpeg, 13 KB");
    EXPECT_EQ(valueOf(binary("KEY", "x", "")), "1 KB");
}

TEST(CardLines, HavePicturesOfPhotosAndLogos)
{
    EXPECT_EQ(cardLines(card({binary("PHOTO", "abc")}), {}).at(0).picture, "abc");
    EXPECT_EQ(cardLines(card({binary("LOGO", "abc")}), {}).at(0).picture, "abc");
    EXPECT_EQ(cardLines(card({binary("KEY", "abc")}), {}).at(0).picture, "");
    EXPECT_EQ(cardLines(card({text("PHOTO", "http://a.org/a.png")}), {}).at(0).picture, "");
}

TEST(CardLines, OmitBookkeepingAndEmptyValues)
{
    EXPECT_TRUE(cardLines(card({text("UID", "1"), text("NOTE", " ")}), {}).empty());
}

TEST(CardLines, NameTheListsOfAPerson)
{
    const auto lines = cardLines(card({}, {"Choir"}), {});

    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].title, "In the list");
    EXPECT_EQ(lines[0].value, "Choir");
    EXPECT_EQ(lines[0].property, "MEMBER");
}

TEST(CardLines, HaveNoVerdictWithoutAnotherCard)
{
    EXPECT_EQ(cardLines(card({text("NOTE", "a")}), {}).at(0).verdict, CardVerdict::None);
}

TEST(CardLines, ShowWhatAKeptCardHasInstead)
{
    const auto line = compared(card({text("NOTE", "a")}), card({text("NOTE", "b")}));

    EXPECT_EQ(line.verdict, CardVerdict::Different);
    EXPECT_EQ(line.keptValue, "b");
    EXPECT_EQ(compared(card({text("NOTE", "a")}), card({text("NOTE", " a")})).verdict,
              CardVerdict::Same);
    EXPECT_EQ(compared(card({text("NOTE", "a")}), card({})).verdict, CardVerdict::OnlyHere);
    EXPECT_EQ(compared(card({text("NOTE", "a")}), card({text("NOTE", " ")})).verdict,
              CardVerdict::OnlyHere);
}

TEST(CardLines, TakeOneOfSeveralInsteadOnlyWithTheSameLabel)
{
    const auto home = card({text("TEL", "1", "HOME")});

    EXPECT_EQ(compared(home, card({text("TEL", "2", "HOME")})).keptValue, "2");
    EXPECT_EQ(compared(home, card({text("TEL", "2", "WORK")})).verdict, CardVerdict::OnlyHere);
    EXPECT_EQ(compared(card({text("TEL", "1")}), card({text("TEL", "2")})).verdict,
              CardVerdict::OnlyHere);
}

TEST(CardLines, TakeNothingInsteadThatTheCardHasItself)
{
    const auto both = card({text("TEL", "1", "HOME"), text("TEL", "2", "HOME")});

    EXPECT_EQ(compared(both, card({text("TEL", "2", "HOME")})).verdict, CardVerdict::OnlyHere);
}

TEST(CardLines, LookInEveryKeptCard)
{
    const std::vector kept{card({}), card({text("BDAY", "19800401")}), card({text("NOTE", "a")})};

    const auto lines = cardLines(card({text("NOTE", "a"), text("BDAY", "19800402")}), kept);

    EXPECT_EQ(lines.at(0).verdict, CardVerdict::Same);
    EXPECT_EQ(lines.at(1).keptValue, "19800401");
}

TEST(EnumeratedText, NamesTheFirstOfMany)
{
    const std::vector<OnlyHere> many(100, OnlyHere{"NOTE", "x"});

    EXPECT_EQ(enumeratedText(many), "note, note, note, note, note, note, note, note, note, note, "
                                    "note, note, and 88 more");
}

}  // namespace
}  // namespace dunmora::test
