#include "adapters/vcard/Lines.h"

#include "tests/adapters/vcard/ReadText.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace dunmora::test {

namespace {

/// The content of every line of the text, each followed by "|".
std::string contents(std::string_view text)
{
    std::string contents;
    Lines lines(text);
    for (std::size_t position = 0; position < text.size();) {
        const auto line = lines.at(position);
        contents.append(text.substr(line.begin, line.end - line.begin)).append("|");
        position = line.next;
    }
    return contents;
}

TEST(Lines, EndAtLineFeedsAndCarriageReturns)
{
    EXPECT_EQ(contents("a\nb\r\nc\rd\r\r\ne"), "a|b|c|d|e|");
    EXPECT_EQ(contents("\n\r\r\n"), "||");
    EXPECT_EQ(contents("a\r"), "a|");
}

TEST(Lines, AreUnfoldedAsRequested)
{
    const std::string_view lines = "a=\r\n b\r\n\tc=";

    EXPECT_EQ(unfold(lines, FoldBlank::Remove, SoftBreaks::Keep), "a=bc=");
    EXPECT_EQ(unfold(lines, FoldBlank::Keep, SoftBreaks::Keep), "a= b\tc=");
    EXPECT_EQ(unfold(lines, FoldBlank::Remove, SoftBreaks::Remove), "a bc=");
}

TEST(Lines, AreUnfoldedWithoutTheBlankOfTheFold)
{
    const ReadText text(card30("N:Lee;A\r\n nn\r\n\t  Marie;;;\r\nFN:x\r\n"));

    EXPECT_EQ(text.only().firstName, "Ann  Marie");
}

TEST(Lines, AreUnfoldedInsideACharacterAndInsideAPropertyName)
{
    const ReadText text(
        card30("N:Lee;J\xC3\r\n \xB8rgen\r\nNICK\r\n NAME:Jo\r\nTEL;TYPE=ho\r\n me:1\r\n"));

    EXPECT_EQ(text.only().firstName, "J\u00F8rgen");
    EXPECT_EQ(text.only().nickname, "Jo");
    EXPECT_EQ(text.phones(), Texts{"_$!<Home>!$_=1"});
}

TEST(Lines, KeepTheBlankOfTheFoldInVersion21)
{
    const ReadText text(card21("FN:Ann\r\n Marie Lee\r\n"));

    EXPECT_EQ(text.only().firstName, "Ann Marie Lee");
}

TEST(Lines, AreUnfoldedByTheVersionWhereverItIsInTheCard)
{
    const ReadText text("BEGIN:VCARD\nFN:Ann\n Marie\nVERSION:2.1\nEND:VCARD\n"
                        "BEGIN:VCARD\nFN:Ann\n Marie\nVERSION:3.0\nEND:VCARD\n");

    EXPECT_EQ(text.firstNames(), (Texts{"Ann Marie", "AnnMarie"}));
}

TEST(Lines, OfQuotedPrintableTextAreJoinedAtSoftBreaks)
{
    const ReadText text(
        card21("N;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:=C3=98ster;J=C3=B8r=\r\ngen=\r\n;;;\r\n"
               "NICKNAME;QUOTED-PRINTABLE:J=\r\n o\r\n"));

    EXPECT_EQ(text.only().lastName, "\u00D8ster");
    EXPECT_EQ(text.only().firstName, "J\u00F8rgen");
    EXPECT_EQ(text.only().nickname, "J o");
}

TEST(Lines, OfQuotedPrintableTextEndAtAnEmptyLine)
{
    const ReadText text(
        card21("N;ENCODING=QUOTED-PRINTABLE:Lee;Ann=\r\n\r\n"
               "NICKNAME;ENCODING=QUOTED-PRINTABLE:An=\r\n=6Eie=\r\n\r\nTEL:1\r\n"));

    EXPECT_EQ(text.only().firstName, "Ann");
    EXPECT_EQ(text.only().nickname, "Annie");
    EXPECT_EQ(text.phones(), Texts{"-=1"});
}

TEST(Lines, OfQuotedPrintableTextAreNotReadAsProperties)
{
    const ReadText text(card21("NOTE;ENCODING=QUOTED-PRINTABLE:call=\r\nTEL:666=\r\nEND:VCARD=\r\n"
                               "BEGIN:VCARDS\r\nTEL:1\r\n"));

    EXPECT_EQ(text.phones(), Texts{"-=1"});
    EXPECT_TRUE(text.cards().skipped.empty());
}

TEST(Lines, OfQuotedPrintableTextEndBeforeABeginLine)
{
    for (const std::string broken : {"N;ENCODING=QUOTED-PRINTABLE:Lee;Ann=\r\n",
                                     "NOTE;ENCODING=QUOTED-PRINTABLE:call=\r\nTEL:666=\r\n",
                                     "NOTE;ENCODING=\r\n QUOTED-PRINTABLE:call=\r\n",
                                     "AGENT;ENCODING=QUOTED-PRINTABLE:=\r\n"}) {
        for (const auto* begin :
             {"BEGIN:VCARD", "begin : vcard ", "\xEF\xBB\xBF\xEF\xBB\xBF BEGIN:VCARD"}) {
            const auto text = broken + begin;
            SCOPED_TRACE(text);
            const ReadText cards("BEGIN:VCARD\r\nVERSION:2.1\r\n" + text +
                                 "\r\nVERSION:2.1\r\nN:Lee;Bob\r\nTEL:1\r\nEND:VCARD\r\n");

            EXPECT_EQ(cards.firstNames(), Texts{"Bob"});
            EXPECT_EQ(cards.cards().skipped, std::vector<std::size_t>{0});
        }
    }
}

TEST(Lines, OfQuotedPrintableTextEndBeforeAnIndentedBeginLine)
{
    const ReadText text("BEGIN:VCARD\nVERSION:3.0\nN;ENCODING=QUOTED-PRINTABLE:Lee;Ann=\n\t " +
                        named("Bob"));

    EXPECT_EQ(text.firstNames(), Texts{"Bob"});
    EXPECT_EQ(text.cards().skipped, std::vector<std::size_t>{0});
}

TEST(Lines, OfQuotedPrintableTextBreakOffAtAnEndLine)
{
    // An indented BEGIN would be a folded line of the card if END were part of the text.
    const ReadText text(
        "BEGIN:VCARD\nVERSION:3.0\nN;ENCODING=QUOTED-PRINTABLE:Lee;Ann=\nEND:VCARD\n  " +
        named("Bob"));
    EXPECT_EQ(text.firstNames(), Texts{"Bob"});
    EXPECT_EQ(text.cards().skipped, std::vector<std::size_t>{0});

    const ReadText inner(card21("N:Lee;Ann\r\nAGENT:\r\nBEGIN:VCARD\r\n"
                                "N;ENCODING=QUOTED-PRINTABLE:Lee;Ike=\r\nEND:VCARD\r\n"));
    EXPECT_TRUE(inner.people().empty());
    EXPECT_EQ(inner.cards().skipped, std::vector<std::size_t>{0});
}

TEST(Lines, OfQuotedPrintableTextMayBeAFoldedEndLine)
{
    const ReadText text(card30("N;ENCODING=QUOTED-PRINTABLE:Lee;Ann=\r\n END:VCARD\r\nTEL:1\r\n"));

    EXPECT_EQ(text.phones(), Texts{"-=1"});
    EXPECT_EQ(text.only().firstName, "Ann END:VCARD");
}

TEST(Lines, AreNotJoinedAtAnEqualsSignOutsideQuotedPrintableText)
{
    const ReadText text(card30("PHOTO;ENCODING=b:aGVsbG8=\r\nTEL:1\r\nX-SUM:1+1=\r\nTEL:2\r\n"));

    EXPECT_EQ(text.phones(), (Texts{"-=1", "-=2"}));
}

TEST(Lines, OfUnfoldedBase64AreSkipped)
{
    const ReadText text(card21("PHOTO;ENCODING=BASE64;TYPE=JPEG:\r\n/9j/4AAQSkZJRgABAQAAAQAB\r\n"
                               "AAD/2wBDAAUDBAQEAwUEBAQ=\r\n\r\nTEL;CELL:1\r\n"));

    EXPECT_EQ(text.phones(), Texts{"_$!<Mobile>!$_=1"});
}

TEST(Lines, OfAFoldedPropertyAreNotReadAsBase64)
{
    const ReadText text(card30("N:Lee;Ann\r\nPHOTO;ENCODING=b:bm90aGluZw==\r\n"
                               "TEL;TYPE=WORK;\r\n TYPE=VOICE:1\r\nTEL:2\r\n"));
    EXPECT_EQ(text.phones(), (Texts{"_$!<Work>!$_=1", "-=2"}));

    const ReadText name(card30("N;ENCODING=b:TGVlO0Fubg==\r\nTEL;TYPE=WORK;\r\n TYPE=VOICE:1\r\n"));
    EXPECT_EQ(name.only().firstName, "Ann");
    EXPECT_EQ(name.phones(), Texts{"_$!<Work>!$_=1"});
}

}  // namespace

}  // namespace dunmora::test
