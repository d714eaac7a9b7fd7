#include "text/DisplayText.h"

#include "text/Utf8.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace dunmora::test {
namespace {

TEST(DisplayText, LeavesOrdinaryTextAlone)
{
    for (const std::string text :
         {"", "Ann Lee", "~ !", "Zoë", "王小明", "😀", "\u05E9\u05DC\u05D5\u05DD", "e\u0301"}) {
        EXPECT_EQ(displayText(text), text);
    }
}

TEST(DisplayText, DrawsEveryC0ControlAndDelete)
{
    EXPECT_EQ(displayText(std::string("\0", 1)), "␀");
    EXPECT_EQ(displayText("\x1b[31m\t\r\n\x1f\x7f"), "␛[31m␉␍␊␟␡");
}

TEST(DisplayText, ReplacesHiddenControls)
{
    // C1 as characters, marks and embeddings of direction, isolates, separators.
    // NOLINTBEGIN(misc-misleading-bidirectional): misleading on purpose.
    for (const auto* text : {"\u0080", "\u009B", "\u009F", "\u061C", "\u200E", "\u200F", "\u202A",
                             "\u202E", "\u2028", "\u2029", "\u2066", "\u2069"}) {
        // NOLINTEND(misc-misleading-bidirectional)
        EXPECT_EQ(displayText(std::string("a") + text + "b"), "a\uFFFDb");
    }
    for (const auto* text : {"\u00A0", "\u200D", "\u202F", "\u2065", "\u206A"}) {
        EXPECT_EQ(displayText(text), text);
    }
}

TEST(DisplayText, ReplacesCharactersThatHideInAWord)
{
    for (const auto* text : {"\u00AD", "\u034F", "\u200B", "\uFEFF", "\uFFF9", "\uFFFB",
                             "\U000E0001", "\U000E0061", "\U000E007F"}) {
        EXPECT_EQ(displayText(std::string("a") + text + "b"), "a\uFFFDb");
    }
}

/// The emoji of a flag with these tags: lower-case letters, and "." for the tag that ends them.
std::string flag(std::string_view tags)
{
    std::string text = "\U0001F3F4";
    for (const char tag : tags) {
        appendUtf8(text, 0xE0000U + (tag == '.' ? 0x7FU : static_cast<unsigned char>(tag)));
    }
    return text;
}

TEST(DisplayText, KeepsTheFlagsThatConsistOfTags)
{
    for (const auto* tags : {"gbeng.", "gbsct.", "gbwls."}) {
        const auto text = "a" + flag(tags) + "b";
        EXPECT_EQ(displayText(text), text);
        EXPECT_EQ(windowText(text), text);
    }

    EXPECT_EQ(displayText(flag("gbeng")), "\U0001F3F4\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(displayText(flag("a.")), "\U0001F3F4\uFFFD\uFFFD");
    EXPECT_EQ(windowText(flag("gbeng")), "\U0001F3F4");
    EXPECT_EQ(windowText(flag("secret.")), "\U0001F3F4");
    EXPECT_EQ(windowText(flag("gbeng.gbeng.")), flag("gbeng."));
}

TEST(DisplayText, ReplacesInvalidUtf8)
{
    EXPECT_EQ(displayText("Zo\xEB"), "Zo\uFFFD");
    EXPECT_EQ(displayText("\x9B"
                          "31m"),
              "\uFFFD31m");
    EXPECT_EQ(displayText("\xC0\x9B"), "\uFFFD\uFFFD");
}

TEST(DisplayEffect, ClassifiesWhatACharacterDoesToItsLine)
{
    using enum DisplayEffect;
    struct Range {
        char32_t first;
        char32_t last;
        DisplayEffect effect;
    };
    // All of Unicode that has an effect, with its neighbours.
    for (const auto& [first, last, effect] : {
             Range{0x00, 0x08, Control},
             Range{0x09, 0x09, Tab},
             Range{0x0A, 0x0D, LineBreak},
             Range{0x0E, 0x1F, Control},
             Range{0x20, 0x7E, None},
             Range{0x7F, 0x84, Control},
             Range{0x85, 0x85, LineBreak},
             Range{0x86, 0x9F, Control},
             Range{0xA0, 0xAC, None},
             Range{0xAD, 0xAD, Hidden},
             Range{0xAE, 0x034E, None},
             Range{0x034F, 0x034F, Hidden},
             Range{0x0350, 0x061B, None},
             Range{0x061C, 0x061C, DirectionalMark},
             Range{0x061D, 0x200A, None},
             Range{0x200B, 0x200B, Hidden},
             Range{0x200C, 0x200D, None},
             Range{0x200E, 0x200F, DirectionalMark},
             Range{0x2010, 0x2027, None},
             Range{0x2028, 0x2029, LineBreak},
             Range{0x202A, 0x202E, DirectionalFormatting},
             Range{0x202F, 0x2065, None},
             Range{0x2066, 0x2069, DirectionalFormatting},
             Range{0x206A, 0xFEFE, None},
             Range{0xFEFF, 0xFEFF, Hidden},
             Range{0xFF00, 0xFFF8, None},
             Range{0xFFF9, 0xFFFB, Hidden},
             Range{0xFFFC, 0xDFFFF, None},
             Range{0xE0000, 0xE007F, Hidden},
             Range{0xE0080, 0x10FFFF, None},
         }) {
        for (auto c = first; c <= last; ++c) {
            ASSERT_EQ(displayEffect(c), effect) << static_cast<unsigned>(c);
        }
    }
}

TEST(WindowText, LeavesOrdinaryTextAndDirectionalMarksAlone)
{
    for (const std::string text : {"", "Ann Lee", "Zoë", "王小明", "\u05D0\u200F!", "e\u0301"}) {
        EXPECT_EQ(windowText(text), text);
    }
}

TEST(WindowText, TurnsEachLineBreakAndTabIntoOneSpace)
{
    EXPECT_EQ(windowText("a\nb\r\nc\td\re\u0085f\u2028g\u2029h\n\ri"), "a b c d e f g h  i");
}

TEST(WindowText, ReplacesOtherControlsAndInvalidBytes)
{
    EXPECT_EQ(windowText(std::string("a\0b", 3) + "\x1B[1m\x7F\u009B"),
              "a\uFFFDb\uFFFD[1m\uFFFD\uFFFD");
    EXPECT_EQ(windowText("A\xFF\xC3"), "A\uFFFD\uFFFD");
}

TEST(WindowText, DropsCharactersThatHideInAWord)
{
    EXPECT_EQ(windowText("a\u00AD\u034F\u200B\uFEFF\uFFF9\uFFFA\uFFFB\U000E0061b"), "ab");
}

TEST(WindowText, DropsDirectionalFormatting)
{
    // NOLINTNEXTLINE(misc-misleading-bidirectional): misleading on purpose.
    EXPECT_EQ(windowText("a\u202Eb\u2066c"), "abc");
}

TEST(WindowLines, KeepsLineBreaks)
{
    EXPECT_EQ(windowLines("a\nb\r\nc\td\re\u0085f\u2028g\u2029h\n\ri"),
              "a\nb\nc d\ne\nf\ng\nh\n\ni");
}

TEST(WindowLines, TreatsAllElseAsInOneLine)
{
    // NOLINTNEXTLINE(misc-misleading-bidirectional): misleading on purpose.
    EXPECT_EQ(windowLines("a\u202Eb\u2066c\u00AD\u200F\x1B\xFF"), "abc\u200F\uFFFD\uFFFD");
}

TEST(ShownPart, IsTheWholeOfAnOrdinaryText)
{
    EXPECT_EQ(shownPart(""), "");
    EXPECT_EQ(shownPart("abcd", 4), "abcd");
    EXPECT_EQ(shownPart(std::string(kMaxShownBytes, 'x')).size(), kMaxShownBytes);
}

TEST(ShownPart, EndsBetweenCharacters)
{
    EXPECT_EQ(shownPart("abcdef", 4), "abcd");
    EXPECT_EQ(shownPart("abc\u00EBd", 4), "abc");
    EXPECT_EQ(shownPart("abc\u00EBd", 5), "abc\u00EB");
    EXPECT_EQ(shownPart("a\U0001F600", 4), "a");
    EXPECT_EQ(shownPart(std::string(10, '\x80'), 5).size(), 2U);
    EXPECT_EQ(shownPart(std::string(1'000'000, 'x')).size(), kMaxShownBytes);
}

TEST(Quoted, PutsTheSafeTextInQuotationMarks)
{
    EXPECT_EQ(quotedText("Ann\n"), "“Ann␊”");
    EXPECT_EQ(quotedPath("a/b\x1b.vcf"), "“a/b␛.vcf”");
    EXPECT_EQ(quotedText(""), "“”");
}

}  // namespace
}  // namespace dunmora::test
