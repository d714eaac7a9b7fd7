#include "adapters/qt/OneLineText.h"

#include <gtest/gtest.h>

#include <QTextDocument>

#include <string>

namespace dunmora::test {

namespace {

TEST(OneLineText, LeavesAnOrdinaryTextAlone)
{
    EXPECT_EQ(oneLineText("Ann Lee"), QStringLiteral("Ann Lee"));
    EXPECT_EQ(oneLineText("Zo\xC3\xAB \xE5\xBC\xA0"), QStringLiteral(u"Zo\u00EB \u5F20"));
    EXPECT_EQ(oneLineText(""), QString());
}

TEST(OneLineText, TurnsALineBreakIntoOneSpace)
{
    EXPECT_EQ(oneLineText("a\nb\r\nc\td"), QStringLiteral("a b c d"));
    EXPECT_EQ(oneLineText("a\xE2\x80\xA8"
                          "b\xE2\x80\xA9"
                          "c\xC2\x85"
                          "d"),
              QStringLiteral("a b c d"));
}

TEST(OneLineText, ReplacesControlCharacters)
{
    using namespace std::string_view_literals;

    EXPECT_EQ(oneLineText("a\0b\x1B[1m\x7F"sv), QStringLiteral(u"a\uFFFDb\uFFFD[1m\uFFFD"));
    EXPECT_EQ(oneLineText("\xC2\x9B"), QStringLiteral(u"\uFFFD"));
}

TEST(OneLineText, ReplacesInvalidBytes)
{
    EXPECT_EQ(oneLineText("A\xFF\xC3"), QStringLiteral(u"A\uFFFD\uFFFD"));
}

TEST(OneLineText, DropsDirectionalFormatting)
{
    const std::string override{'\xE2', '\x80', '\xAE'};
    const std::string isolate{'\xE2', '\x81', '\xA6'};

    EXPECT_EQ(oneLineText("a" + override + "b" + isolate + "c"), QStringLiteral("abc"));
    EXPECT_EQ(oneLineText("\xD7\x90\xD7\x91"), QStringLiteral(u"\u05D0\u05D1"));
}

TEST(OneLineText, CutsALongTextBetweenCharacters)
{
    EXPECT_EQ(oneLineText("abcdef", 4), QStringLiteral(u"abcd\u2026"));
    EXPECT_EQ(oneLineText("abcd", 4), QStringLiteral("abcd"));
    EXPECT_EQ(oneLineText("abc\xC3\xAB", 4), QStringLiteral(u"abc\u2026"));
    EXPECT_EQ(oneLineText(std::string(8'000'000, 'x')).size(), kMaxShownBytes + 1);
    EXPECT_EQ(oneLineText(std::string(10, '\x80'), 2), QStringLiteral(u"\u2026"));
}

TEST(ToolTipText, ShowsMarkupLiterally)
{
    QTextDocument document;

    document.setHtml(toolTipText({QStringLiteral("<b>a</b> & b"), QString(), QStringLiteral("c")}));

    EXPECT_EQ(document.toPlainText(), QStringLiteral("<b>a</b> & b\nc"));
}

TEST(ToolTipText, IsEmptyWithoutParagraphs)
{
    EXPECT_EQ(toolTipText({}), QString());
    EXPECT_EQ(toolTipText({QString()}), QString());
}

}  // namespace

}  // namespace dunmora::test
