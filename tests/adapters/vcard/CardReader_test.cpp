#include "adapters/vcard/CardReader.h"

#include "tests/adapters/vcard/ReadText.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace dunmora::test {

namespace {

TEST(CardReader, FindsNobodyInTextWithoutCards)
{
    EXPECT_TRUE(ReadText("").people().empty());
    EXPECT_TRUE(ReadText("\r\n\r\n").people().empty());
    EXPECT_TRUE(ReadText("Dear Ann,\nbest wishes\n").people().empty());
}

TEST(CardReader, KeepsTheOrderOfTheText)
{
    EXPECT_EQ(ReadText(named("Zoe") + named("Ann") + named("Moe")).firstNames(),
              (Texts{"Zoe", "Ann", "Moe"}));
}

TEST(CardReader, IgnoresCaseAndSurroundingBlanks)
{
    const ReadText text("  begin : vcard \nversion:3.0\nn:lee;ann;;;\n\tEnd:VCard\nend:vcard\t\n");

    EXPECT_EQ(text.firstNames(), Texts{"ann"});
}

TEST(CardReader, SkipsACardWithoutEnd)
{
    const ReadText text("BEGIN:VCARD\r\nVERSION:3.0\r\nN:;Lost;;;\r\n");

    EXPECT_TRUE(text.people().empty());
    EXPECT_EQ(text.cards().skipped, std::vector<std::size_t>{0});
}

TEST(CardReader, StartsANewCardAtABeginInsideAnOpenCard)
{
    const ReadText text("BEGIN:VCARD\r\nVERSION:3.0\r\nN:;Lost;;;\r\n" + named("Ann"));

    EXPECT_EQ(text.firstNames(), Texts{"Ann"});
    EXPECT_EQ(text.card(0), named("Ann"));
    EXPECT_EQ(text.cards().skipped, std::vector<std::size_t>{0});
}

TEST(CardReader, StartsANewCardAtABeginAfterAByteOrderMark)
{
    // A card that breaks off, joined with another file.
    for (const std::string lost : {"N:;Lost;;;\n", "N:;Lost;;;\nAGENT:\n"}) {
        const ReadText text("BEGIN:VCARD\nVERSION:3.0\n" + lost + "\xEF\xBB\xBF" + named("Ann"));

        EXPECT_EQ(text.firstNames(), Texts{"Ann"}) << lost;
        EXPECT_EQ(text.card(0), named("Ann")) << lost;
        EXPECT_EQ(text.cards().skipped, std::vector<std::size_t>{0}) << lost;
    }
}

TEST(CardReader, FindsACardAfterZeroBytes)
{
    // A crash can leave zero bytes where a program was writing.
    const std::string zeros(3, '\0');
    const ReadText text(zeros + named("Ann") + zeros + "\n" + zeros + named("Ben"));
    EXPECT_EQ(text.firstNames(), (Texts{"Ann", "Ben"}));
    EXPECT_EQ(text.card(0), named("Ann"));

    const ReadText broken("BEGIN:VCARD\nVERSION:3.0\nN:;Lost\n" + zeros + named("Ann"));
    EXPECT_EQ(broken.firstNames(), Texts{"Ann"});
    EXPECT_EQ(broken.card(0), named("Ann"));
    EXPECT_EQ(broken.cards().skipped, std::vector<std::size_t>{0});
}

TEST(CardReader, SkipsACardWithoutProperties)
{
    EXPECT_EQ(ReadText("BEGIN:VCARD\nEND:VCARD\n").cards().skipped.size(), 1U);
    EXPECT_EQ(ReadText("BEGIN:VCARD\nhello\nEND:VCARD\n").cards().skipped.size(), 1U);
    EXPECT_EQ(ReadText("BEGIN:VCARD\nsome words: here\nEND:VCARD\n").cards().skipped.size(), 1U);
}

TEST(CardReader, CountsACardWithOnlyAVersionAsAPerson)
{
    const ReadText text("BEGIN:VCARD\nVERSION:3.0\nEND:VCARD\n");

    EXPECT_EQ(text.people().size(), 1U);
    EXPECT_TRUE(text.cards().skipped.empty());
}

TEST(CardReader, CountsGroupsNeitherAsPeopleNorAsSkipped)
{
    for (const auto* kind :
         {"KIND:group", "kind:GROUP", "X-ADDRESSBOOKSERVER-KIND:group", "X-EVOLUTION-LIST:TRUE"}) {
        const ReadText text(card30(std::string("N:Club;;;;\r\n") + kind + "\r\n"));

        EXPECT_TRUE(text.people().empty()) << kind;
        EXPECT_TRUE(text.cards().skipped.empty()) << kind;
        EXPECT_EQ(text.cards().groups.size(), 1U) << kind;
    }
    EXPECT_EQ(ReadText(card30("KIND:individual\r\n")).people().size(), 1U);
    EXPECT_EQ(ReadText(card30("KIND:org\r\n")).people().size(), 1U);
    EXPECT_EQ(ReadText(card30("X-EVOLUTION-LIST:FALSE\r\n")).people().size(), 1U);
}

TEST(CardReader, GivesACardTheRangeFromBeginToTheLineEndAfterEnd)
{
    const ReadText text("junk\r\n" + named("Ann") + "\r\nmore junk\r\n" + named("Ben") + "rest");

    EXPECT_EQ(text.card(0), named("Ann"));
    EXPECT_EQ(text.card(1), named("Ben"));
    EXPECT_EQ(text.cards().ranges[0].lineEndSize, 2U);
}

TEST(CardReader, GivesTheRangeOfALastCardWithoutALineEnd)
{
    const ReadText text("BEGIN:VCARD\nN:;Ann\nEND:VCARD");

    EXPECT_EQ(text.card(0), "BEGIN:VCARD\nN:;Ann\nEND:VCARD");
    EXPECT_EQ(text.cards().ranges[0].lineEndSize, 0U);
}

TEST(CardReader, LeavesAByteOrderMarkOutOfTheRange)
{
    const ReadText text("\xEF\xBB\xBF" + named("Ann") + "\xEF\xBB\xBF" + named("Ben"));

    EXPECT_EQ(text.card(0), named("Ann"));
    EXPECT_EQ(text.card(1), named("Ben"));
}

TEST(CardReader, SkipsAnyNumberOfByteOrderMarks)
{
    const ReadText text("\xEF\xBB\xBF\xEF\xBB\xBF" + named("Ann"));

    EXPECT_EQ(text.card(0), named("Ann"));
}

TEST(CardReader, ReadsEveryKindOfLineEnd)
{
    for (const std::string end : {"\r\n", "\n", "\r", "\r\r\n"}) {
        const ReadText text(joined({"BEGIN:VCARD", "VERSION:3.0", "N:Lee;An", " n", "", "TEL:1",
                                    "END:VCARD", "BEGIN:VCARD", "FN:Ben", "END:VCARD"},
                                   end));

        EXPECT_EQ(text.firstNames(), (Texts{"Ann", "Ben"})) << testing::PrintToString(end);
        EXPECT_EQ(text.cards().ranges[1].begin, text.cards().ranges[0].end);
        EXPECT_EQ(text.cards().ranges[1].lineEndSize, end.size());
    }
}

TEST(CardReader, ReadsMixedLineEnds)
{
    const ReadText text("BEGIN:VCARD\rVERSION:3.0\nN:Lee;Ann\r\nTEL:1\rTEL:2\nEND:VCARD\r"
                        "BEGIN:VCARD\nFN:Ben\r\nEND:VCARD");

    EXPECT_EQ(text.firstNames(), (Texts{"Ann", "Ben"}));
    EXPECT_EQ(text.phones(), (Texts{"-=1", "-=2"}));
}

TEST(CardReader, DoesNotReadAFoldedLineAsBeginOrEnd)
{
    for (const auto* version : {"3.0", "4.0"}) {
        const ReadText text(card(version, "N:Lee;Ann\r\nNOTE:see\r\n END:VCARD\r\n BEGIN:VCARD\r\n"
                                          "\tEND:VCARD\r\nNICKNAME:Annie\r\n"));

        ASSERT_EQ(text.people().size(), 1U) << version;
        EXPECT_EQ(text.only().nickname, "Annie") << version;
        EXPECT_TRUE(text.cards().skipped.empty()) << version;
    }
}

TEST(CardReader, AcceptsAnIndentedEndInVersion21)
{
    const ReadText text("BEGIN:VCARD\nVERSION:2.1\nFN:Ann\n END:VCARD\n" + named("Ben"));

    EXPECT_EQ(text.firstNames(), (Texts{"Ann", "Ben"}));
}

TEST(CardReader, KeepsACardInsideAgentAsPartOfTheOuterCard)
{
    const std::string whole =
        "BEGIN:VCARD\r\nVERSION:2.1\r\nN:Lee;Ann\r\nAGENT:\r\nBEGIN:VCARD\r\nVERSION:2.1\r\n"
        "N:Inner;Ike\r\nTEL:666\r\nEND:VCARD\r\nTEL:1\r\nEND:VCARD\r\n";
    const ReadText text(whole);

    EXPECT_EQ(text.firstNames(), Texts{"Ann"});
    EXPECT_EQ(text.phones(), Texts{"-=1"});
    EXPECT_EQ(text.card(0), whole);
}

TEST(CardReader, AcceptsAnAgentWhoseCardBeginsOnTheSameLine)
{
    const ReadText text("BEGIN:VCARD\nVERSION:2.1\nN:Lee;Ann\nAGENT:BEGIN:VCARD\nN:Inner;Ike\n"
                        "END:VCARD\nTEL:1\nEND:VCARD\n");

    EXPECT_EQ(text.firstNames(), Texts{"Ann"});
    EXPECT_EQ(text.phones(), Texts{"-=1"});
}

TEST(CardReader, AcceptsAnAgentInsideAnAgent)
{
    const ReadText text("BEGIN:VCARD\nN:Lee;Ann\nAGENT:\nBEGIN:VCARD\nAGENT:\n\nBEGIN:VCARD\n"
                        "N:;C\nEND:VCARD\nEND:VCARD\nTEL:1\nEND:VCARD\n");

    EXPECT_EQ(text.firstNames(), Texts{"Ann"});
    EXPECT_EQ(text.phones(), Texts{"-=1"});
}

TEST(CardReader, IgnoresAnAgentThatIsTextOrFolded)
{
    const ReadText text(
        "BEGIN:VCARD\nVERSION:3.0\nN:Lee;Ann\nAGENT:BEGIN:VCARD\\nN:;C\\nEND:VCARD\n"
        "AGENT:BEGIN:VCARD\n N:Inner;Ike\n END:VCARD\nAGENT:Somebody\nTEL:1\n"
        "END:VCARD\n" +
        named("Ben"));

    EXPECT_EQ(text.firstNames(), (Texts{"Ann", "Ben"}));
    EXPECT_EQ(text.phones(0), Texts{"-=1"});
}

TEST(CardReader, NestsOnlyACardDirectlyAfterAgent)
{
    const ReadText text("BEGIN:VCARD\nN:;Lost\nAGENT:\nTEL:1\n" + named("Ann"));

    EXPECT_EQ(text.firstNames(), Texts{"Ann"});
    EXPECT_EQ(text.cards().skipped.size(), 1U);
}

TEST(CardReader, SkipsACardWhoseAgentHasNoEnd)
{
    const ReadText text("BEGIN:VCARD\nN:;Lost\nAGENT:\nBEGIN:VCARD\nN:;Inner\nEND:VCARD\n" +
                        named("Ann"));

    EXPECT_EQ(text.firstNames(), Texts{"Ann"});
    EXPECT_EQ(text.cards().skipped, std::vector<std::size_t>{0});
}

}  // namespace

}  // namespace dunmora::test
