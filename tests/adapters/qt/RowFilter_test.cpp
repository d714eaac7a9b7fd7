#include "adapters/qt/RowFilter.h"

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <string_view>

namespace dunmora::test {

namespace {

struct Texts {
    std::string_view first = "Ann";
    std::string_view last = "Lee";
    std::string_view nickname = "Annie";
    std::string_view home = "+1 (555) 0100";
    std::string_view work = "555-0199";
};

bool matches(const QString& typed, const Texts& texts = {})
{
    using Kind = RowFilter::Cell::Kind;
    const std::array row{
        RowFilter::Cell{Kind::Name, texts.first}, RowFilter::Cell{Kind::Name, texts.last},
        RowFilter::Cell{Kind::Text, texts.nickname}, RowFilter::Cell{Kind::Phone, texts.home},
        RowFilter::Cell{Kind::Phone, texts.work}};
    return RowFilter(typed).matches(row);
}

bool narrows(const QString& next, const QString& last)
{
    return RowFilter(next).narrows(RowFilter(last));
}

TEST(RowFilter, FindsATextAnywhereInAnyCell)
{
    EXPECT_TRUE(matches(QStringLiteral("nn")));
    EXPECT_TRUE(matches(QStringLiteral("Lee")));
    EXPECT_TRUE(matches(QStringLiteral("nnie")));
    EXPECT_TRUE(matches(QStringLiteral("(555)")));
    EXPECT_FALSE(matches(QStringLiteral("Bob")));
}

TEST(RowFilter, FindsEveryRowWhenNothingButBlanksIsTyped)
{
    EXPECT_TRUE(matches(QString()));
    EXPECT_TRUE(matches(QStringLiteral("  ")));
    EXPECT_TRUE(RowFilter(QStringLiteral(" ")).isEmpty());
}

TEST(RowFilter, ReadsFirstAndLastNameAsOne)
{
    EXPECT_TRUE(matches(QStringLiteral("ann lee")));
    EXPECT_TRUE(matches(QStringLiteral(" ann ")));
    EXPECT_FALSE(matches(QStringLiteral("lee annie")));
    EXPECT_FALSE(matches(QStringLiteral("annlee")));
}

TEST(RowFilter, TellsNoCaseApartInAnyScript)
{
    EXPECT_TRUE(matches(QStringLiteral("ANN")));
    EXPECT_TRUE(matches(QStringLiteral(u"ZO\u00CB"), {.first = "Zo\xC3\xAB"}));
    EXPECT_TRUE(matches(QStringLiteral(u"\u0430\u043D"), {.first = "\xD0\x90\xD0\xBD"}));
}

TEST(RowFilter, TellsComposedAndDecomposedCharactersNotApart)
{
    EXPECT_TRUE(matches(QStringLiteral(u"zo\u00EB"), {.first = "Zoe\xCC\x88"}));
    EXPECT_TRUE(matches(QStringLiteral(u"zoe\u0308"), {.first = "Zo\xC3\xAB"}));
}

TEST(RowFilter, FindsAsciiBesideOtherScripts)
{
    EXPECT_TRUE(matches(QStringLiteral("lee"), {.first = "Zo\xC3\xAB"}));
    EXPECT_FALSE(matches(QStringLiteral("bob"), {.first = "Zo\xC3\xAB"}));
}

TEST(RowFilter, FindsATelephoneNumberByItsDigits)
{
    EXPECT_TRUE(matches(QStringLiteral("15550100")));
    EXPECT_TRUE(matches(QStringLiteral("+1-555-0100")));
    EXPECT_TRUE(matches(QStringLiteral("555 01")));
    EXPECT_FALSE(matches(QStringLiteral("01005550199")));
    EXPECT_FALSE(matches(QStringLiteral("x5550100")));
}

TEST(RowFilter, FindsDigitsInNumbersOnly)
{
    EXPECT_FALSE(matches(QStringLiteral("12"), {.nickname = "1-2"}));
    EXPECT_TRUE(matches(QStringLiteral("1-2"), {.nickname = "1-2"}));
    EXPECT_FALSE(matches(QStringLiteral("-)")));
}

TEST(RowFilter, ReadsDigitsOfEveryScript)
{
    EXPECT_TRUE(matches(QStringLiteral("12"), {.home = "\xD9\xA1-\xD9\xA2"}));
    EXPECT_TRUE(matches(QStringLiteral(u"\uFF11\uFF12"), {.home = "1-2"}));
}

TEST(RowFilter, ReadsWhatIsNoUtf8AsItIsShown)
{
    EXPECT_TRUE(matches(QStringLiteral("ann lee"), {.first = "Ann\xFF", .last = "Ann\nLee"}));
    EXPECT_FALSE(matches(QStringLiteral("nn lee"), {.first = "Ann\xFF"}));
}

TEST(RowFilter, FindsWhatStandsFarBehindInALongText)
{
    const auto text = std::string(100'000, 'x') + "needle";

    EXPECT_TRUE(matches(QStringLiteral("needle"), {.nickname = text}));
}

TEST(RowFilter, NarrowsWhenMoreIsTyped)
{
    EXPECT_TRUE(narrows(QStringLiteral("ann"), QStringLiteral("an")));
    EXPECT_TRUE(narrows(QStringLiteral("ann"), QString()));
    EXPECT_TRUE(narrows(QStringLiteral("555-01"), QStringLiteral("555-")));
    EXPECT_TRUE(narrows(QStringLiteral("5a"), QStringLiteral("5")));
}

TEST(RowFilter, DoesNotNarrowWhereARowCouldMatchAnew)
{
    EXPECT_FALSE(narrows(QStringLiteral("an"), QStringLiteral("ann")));
    EXPECT_FALSE(narrows(QStringLiteral("-5"), QStringLiteral("-")));
    EXPECT_FALSE(narrows(QStringLiteral("bob"), QStringLiteral("ann")));
}

}  // namespace

}  // namespace dunmora::test
