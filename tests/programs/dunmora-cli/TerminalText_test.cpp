#include "programs/dunmora-cli/TerminalText.h"

#include <gtest/gtest.h>

#include <clocale>

namespace dunmora::test {
namespace {

TEST(Printable, LeavesOrdinaryTextAlone)
{
    for (const std::string text :
         {"", "Ann Lee", "~ !", "Zoë", "王小明", "😀", "\u05E9\u05DC\u05D5\u05DD", "e\u0301"}) {
        EXPECT_EQ(printable(text), text);
    }
}

TEST(Printable, DrawsEveryC0ControlAndDelete)
{
    EXPECT_EQ(printable(std::string("\0", 1)), "␀");
    EXPECT_EQ(printable("\x1b[31m\t\r\n\x1f\x7f"), "␛[31m␉␍␊␟␡");
}

TEST(Printable, ReplacesHiddenControls)
{
    // C1 as characters, marks and embeddings of direction, isolates, separators.
    // NOLINTBEGIN(misc-misleading-bidirectional): misleading on purpose.
    for (const auto* text : {"\u0080", "\u009B", "\u009F", "\u061C", "\u200E", "\u200F", "\u202A",
                             "\u202E", "\u2028", "\u2029", "\u2066", "\u2069"}) {
        // NOLINTEND(misc-misleading-bidirectional)
        EXPECT_EQ(printable(std::string("a") + text + "b"), "a\uFFFDb");
    }
    for (const auto* text : {"\u00A0", "\u200D", "\u202F", "\u2065", "\u206A"}) {
        EXPECT_EQ(printable(text), text);
    }
}

TEST(Printable, ReplacesWhatIsNotUtf8)
{
    EXPECT_EQ(printable("Zo\xEB"), "Zo\uFFFD");
    EXPECT_EQ(printable("\x9B"
                        "31m"),
              "\uFFFD31m");
    EXPECT_EQ(printable("\xC0\x9B"), "\uFFFD\uFFFD");
}

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

}  // namespace
}  // namespace dunmora::test
