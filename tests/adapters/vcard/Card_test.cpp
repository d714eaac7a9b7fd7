#include "adapters/vcard/Card.h"

#include "tests/adapters/vcard/ReadText.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <vector>

namespace dunmora::test {

namespace {

TEST(Card, ReadsEveryPropertyOfAPerson)
{
    const ReadText text(card30("UID:u-1\r\nN:Lee;Ann;Q.;Dr.;Jr.\r\nFN:Dr. Ann Lee\r\n"
                               "NICKNAME:Annie\r\nTEL;TYPE=home:555-0100\r\n"
                               "REV:2024-05-01T10:00:00Z\r\n"));

    const auto& person = text.only();
    EXPECT_EQ(person.uid, "u-1");
    EXPECT_EQ(person.firstName, "Ann");
    EXPECT_EQ(person.lastName, "Lee");
    EXPECT_EQ(person.nickname, "Annie");
    EXPECT_EQ(person.modified->time_since_epoch().count(), 1714557600);
    EXPECT_EQ(text.phones(), Texts{"_$!<Home>!$_=555-0100"});
}

TEST(Card, LeavesFieldsWithoutAPropertyEmpty)
{
    const ReadText text(card30("NOTE:nobody\r\n"));

    const auto& person = text.only();
    EXPECT_EQ(person.uid, "");
    EXPECT_EQ(person.firstName, std::nullopt);
    EXPECT_EQ(person.lastName, std::nullopt);
    EXPECT_EQ(person.nickname, std::nullopt);
    EXPECT_EQ(person.modified, std::nullopt);
    EXPECT_FALSE(person.phones.has_value());
}

TEST(Card, UsesTheFormattedNameWhenTheNameIsBlank)
{
    for (const auto* name : {"", "N:\r\n", "N:;;;;\r\n", "N: ; ;;;\r\n", "N:;;Q.;Dr.;\r\n"}) {
        const ReadText text(card30(std::string(name) + "FN:Acme\\, Inc.\r\n"));

        EXPECT_EQ(text.only().firstName, "Acme, Inc.") << name;
        EXPECT_EQ(text.only().lastName, std::nullopt) << name;
    }
}

TEST(Card, PrefersTheNameToTheFormattedName)
{
    const ReadText text(card30("FN:Somebody Else\r\nN:Lee;;;;\r\n"));

    EXPECT_EQ(text.only().lastName, "Lee");
    EXPECT_EQ(text.only().firstName, "");
}

TEST(Card, UsesTheFirstOfSeveralProperties)
{
    const ReadText text(card("4.0", "N;ALTID=1;LANGUAGE=jp:<A>;<B>;;;\r\n"
                                    "N;ALTID=1;LANGUAGE=en:Lee;Ann;;;\r\n"
                                    "NICKNAME:One\r\nNICKNAME:Two\r\nUID:1\r\nUID:2\r\n"));

    EXPECT_EQ(text.only().lastName, "<A>");
    EXPECT_EQ(text.only().nickname, "One");
    EXPECT_EQ(text.only().uid, "1");
}

TEST(Card, KeepsBlanksAtBothEnds)
{
    const ReadText text(card30("N: Lee ; Ann ;;;\r\nNICKNAME: A \r\nTEL: 1 \r\n"));

    EXPECT_EQ(text.only().lastName, " Lee ");
    EXPECT_EQ(text.only().firstName, " Ann ");
    EXPECT_EQ(text.only().nickname, " A ");
    EXPECT_EQ(text.phones(), Texts{"-= 1 "});
}

TEST(Card, UsesTheWholeTextOfANickname)
{
    EXPECT_EQ(ReadText(card30("NICKNAME:Ann\\,Annie,A\\;B\r\n")).only().nickname, "Ann,Annie,A;B");
    EXPECT_EQ(ReadText(card30("NICKNAME:\r\n")).only().nickname, "");
}

TEST(Card, ResolvesEscapesOfVersions30And40)
{
    const ReadText text(card30("N:L\\;ee;A\\,n\\\\n\\;;;;\r\nNICKNAME:a\\nb\\Nc\\:d\\x\\\r\n"));

    EXPECT_EQ(text.only().lastName, "L;ee");
    EXPECT_EQ(text.only().firstName, "A,n\\n;");
    EXPECT_EQ(text.only().nickname, "a\nb\nc:d\\x\\");
}

TEST(Card, HasNoEscapedLineEndInVersion21)
{
    const ReadText text(card21("N:L\\;ee;C\\:\\new;;;\r\nNICKNAME:a\\nb\\\\c\r\n"));

    EXPECT_EQ(text.only().lastName, "L;ee");
    EXPECT_EQ(text.only().firstName, "C:\\new");
    EXPECT_EQ(text.only().nickname, "a\\nb\\c");
}

TEST(Card, KeepsAUidUnchanged)
{
    EXPECT_EQ(ReadText(card30("UID:urn:uuid:12-34\r\n")).only().uid, "urn:uuid:12-34");
    EXPECT_EQ(ReadText(card30("UID: a\\,b \r\n")).only().uid, " a\\,b ");
    EXPECT_EQ(ReadText(card30("UID:\r\n")).only().uid, "");
}

TEST(Card, DecodesCharsets)
{
    struct Case {
        std::string parameters;
        std::string bytes;
        std::string text;
    };
    const std::vector<Case> cases = {
        {";CHARSET=UTF-8", "J\xC3\xB8rgen", "J\u00F8rgen"},
        {";charset=iso-8859-1", "J\xF8rgen", "J\u00F8rgen"},
        {";CHARSET=ISO-8859-15", "\xA4uro", "\u20ACuro"},
        {";CHARSET=windows-1252", "\x93J\x94", "\u201CJ\u201D"},
        {";CHARSET=\"windows-1251\"", "\xC0\xED\xED\xE0", "\u0410\u043D\u043D\u0430"},
        {";CHARSET=Shift_JIS", "\x88\xC0\x93\xA1", "\u5B89\u85E4"},
        {";CHARSET=SHIFT_JIS;ENCODING=QUOTED-PRINTABLE", "=88=C0=93=A1", "\u5B89\u85E4"},
        {";ENCODING=b;CHARSET=UTF-8", "SsO4cmdlbg==", "J\u00F8rgen"},
        {";BASE64", "QW5u", "Ann"},
        {";CHARSET=no-such-charset", "J\xC3\xB8rgen", "J\u00F8rgen"},
        {";CHARSET=UTF-8//IGNORE", "J\xF8rgen", "J\u00F8rgen"},
        {"", "J\xF8rgen", "J\u00F8rgen"},
        {";CHARSET=UTF-8", "J\xF8rgen \xC3\xB8", "J\u00F8rgen \u00F8"},
    };
    for (const auto& each : cases) {
        const ReadText text(card21("FN" + each.parameters + ":" + each.bytes + "\r\n"));

        EXPECT_EQ(text.only().firstName, each.text) << each.parameters;
    }
}

TEST(Card, DecodesShiftJisBeforeSplittingIt)
{
    // The second byte of U+8868 is the backslash of ASCII.
    const ReadText text(card21("N;CHARSET=Shift_JIS:\x95\x5C;\x95\x5C;;;\r\n"));

    EXPECT_EQ(text.only().lastName, "\u8868");
    EXPECT_EQ(text.only().firstName, "\u8868");
}

TEST(Card, DecodesBase64OnSeveralLines)
{
    EXPECT_EQ(ReadText(card21("FN;ENCODING=BASE64:QW5u\r\nTWFy\r\naWU=\r\n\r\n")).only().firstName,
              "AnnMarie");
    EXPECT_EQ(ReadText(card30("FN;ENCODING=b:QW5u\r\n TWFyaWU=\r\n")).only().firstName, "AnnMarie");
}

TEST(Card, KeepsTextThatIsOnlyLabelledAsBase64)
{
    EXPECT_EQ(ReadText(card21("FN;BASE64:Ann-Marie!\r\n")).only().firstName, "Ann-Marie!");
}

TEST(Card, IgnoresCharsetsInTextThatIsAlreadyDecoded)
{
    const ReadText text(card21("FN;CHARSET=ISO-8859-1:J\u00F8rgen\r\n"), CardReader::Text::Utf8);
    EXPECT_EQ(text.only().firstName, "J\u00F8rgen");

    const ReadText quoted(card21("FN;CHARSET=ISO-8859-1;ENCODING=QUOTED-PRINTABLE:J=F8rgen\r\n"),
                          CardReader::Text::Utf8);
    EXPECT_EQ(quoted.only().firstName, "J\u00F8rgen");
}

TEST(Card, LabelsAPhoneByItsGroupWhereverTheLabelIs)
{
    const ReadText text(card30("item1.TEL;TYPE=CELL:1\r\nITEM2.TEL:2\r\nitem3.TEL;TYPE=home:3\r\n"
                               "item4.TEL;TYPE=work:4\r\nNOTE:far\r\n"
                               "item1.X-ABLabel:_$!<Home>!$_\r\nitem2.X-ABLABEL:Ann\\, at sea\r\n"
                               "item3.X-ABLabel:\r\nitem9.X-ABLabel:Nobody's\r\n"));

    EXPECT_EQ(text.phones(),
              (Texts{"_$!<Home>!$_=1", "Ann, at sea=2", "_$!<Home>!$_=3", "_$!<Work>!$_=4"}));
}

TEST(Card, UsesTheFirstNonEmptyLabelOfAGroup)
{
    const ReadText text(
        card30("a.TEL:1\r\na.X-ABLabel:\r\na.X-ABLabel:One\r\na.X-ABLabel:Two\r\n"));

    EXPECT_EQ(text.phones(), Texts{"One=1"});
}

TEST(Card, KeepsTheOrderOfItsPhones)
{
    const ReadText text(card30("TEL;PREF=2:1\r\nTEL;TYPE=pref:2\r\nTEL;PREF=1:3\r\n"));

    EXPECT_EQ(text.phones(), (Texts{"-=1", "-=2", "-=3"}));
}

TEST(Card, RemovesOnlyALeadingTelFromANumber)
{
    const ReadText text(card("4.0",
                             "TEL;VALUE=uri;TYPE=\"voice,home\":tel:+1-418-656-9254;ext=102\r\n"
                             "TEL;VALUE=uri:TEL:+1\r\nTEL:sip:tel:1\r\nTEL:\r\n"));

    EXPECT_EQ(text.phones(),
              (Texts{"_$!<Home>!$_=+1-418-656-9254;ext=102", "-=+1", "-=sip:tel:1", "-="}));
}

TEST(Card, ConvertsATypeInOtherBytesToAUtf8Label)
{
    EXPECT_EQ(ReadText(card21("TEL;B\xFCro:1\r\n")).phones(), Texts{"B\u00FCro=1"});
}

}  // namespace

}  // namespace dunmora::test
