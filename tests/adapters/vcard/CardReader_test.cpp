#include "adapters/vcard/CardReader.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora::test {
namespace {

using Texts = std::vector<std::string>;

/// A text and the people that were read out of it.
class ReadText {
public:
    explicit ReadText(std::string text, CardReader::Text kind = CardReader::Text::Bytes)
        : text_(std::move(text))
    {
        reader_.read(text_, kind, cards_);
    }

    const CardReader::Cards& cards() const { return cards_; }
    const std::vector<Person>& people() const { return cards_.people; }
    const Person& only() const { return cards_.people.at(0); }

    /// The bytes of the person's card.
    std::string card(std::size_t index) const
    {
        const auto& range = cards_.ranges.at(index);
        return text_.substr(range.begin, range.end - range.begin);
    }

    /// Every phone as "label=value", a missing label as "-".
    Texts phones(std::size_t index = 0) const
    {
        Texts texts;
        for (const auto& phone : cards_.people.at(index).phones.value_or(PhoneList())) {
            texts.push_back(std::string(phone.label.value_or("-")) + "=" +
                            std::string(phone.value));
        }
        return texts;
    }

    Texts firstNames() const
    {
        Texts names;
        for (const auto& person : cards_.people) {
            names.emplace_back(person.firstName.value_or("-"));
        }
        return names;
    }

private:
    std::string text_;
    CardReader reader_;
    CardReader::Cards cards_;
};

std::string card(const std::string& version, const std::string& properties)
{
    return "BEGIN:VCARD\r\nVERSION:" + version + "\r\n" + properties + "END:VCARD\r\n";
}

std::string card30(const std::string& properties)
{
    return card("3.0", properties);
}

std::string card21(const std::string& properties)
{
    return card("2.1", properties);
}

std::string joined(const Texts& lines, const std::string& end)
{
    std::string text;
    for (const auto& line : lines) {
        text.append(line).append(end);
    }
    return text;
}

/// A card with only a first name, for tests of what stands around it.
std::string named(const std::string& firstName)
{
    return card30("N:;" + firstName + ";;;\r\n");
}

// What a card is.

TEST(CardReader, ReadsEveryPropertyThatAPersonHas)
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

TEST(CardReader, LeavesMissingWhatACardDoesNotSay)
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

TEST(CardReader, FindsNobodyInAnEmptyText)
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

TEST(CardReader, TakesLowerCaseWordsAndBlanksAroundThem)
{
    const ReadText text("  begin : vcard \nversion:3.0\nn:lee;ann;;;\n\tEnd:VCard\nend:vcard\t\n");

    EXPECT_EQ(text.firstNames(), Texts{"ann"});
}

TEST(CardReader, CountsACardWithoutEndAsSkipped)
{
    const ReadText text("BEGIN:VCARD\r\nVERSION:3.0\r\nN:;Lost;;;\r\n");

    EXPECT_TRUE(text.people().empty());
    EXPECT_EQ(text.cards().skipped, std::vector<std::size_t>{0});
}

TEST(CardReader, BeginsAnewAtABeginInsideAnOpenCard)
{
    const ReadText text("BEGIN:VCARD\r\nVERSION:3.0\r\nN:;Lost;;;\r\n" + named("Ann"));

    EXPECT_EQ(text.firstNames(), Texts{"Ann"});
    EXPECT_EQ(text.card(0), named("Ann"));
    EXPECT_EQ(text.cards().skipped, std::vector<std::size_t>{0});
}

TEST(CardReader, CountsACardWithoutAPropertyAsSkipped)
{
    EXPECT_EQ(ReadText("BEGIN:VCARD\nEND:VCARD\n").cards().skipped.size(), 1U);
    EXPECT_EQ(ReadText("BEGIN:VCARD\nhello\nEND:VCARD\n").cards().skipped.size(), 1U);
    EXPECT_EQ(ReadText("BEGIN:VCARD\nsome words: here\nEND:VCARD\n").cards().skipped.size(), 1U);
}

TEST(CardReader, TakesACardWithOnlyAVersionForAPerson)
{
    const ReadText text("BEGIN:VCARD\nVERSION:3.0\nEND:VCARD\n");

    EXPECT_EQ(text.people().size(), 1U);
    EXPECT_TRUE(text.cards().skipped.empty());
}

TEST(CardReader, DoesNotTakeGroupsForPeopleNorForSkippedCards)
{
    for (const auto* kind :
         {"KIND:group", "kind:GROUP", "X-ADDRESSBOOKSERVER-KIND:group", "X-EVOLUTION-LIST:TRUE"}) {
        const ReadText text(card30(std::string("N:Club;;;;\r\n") + kind + "\r\n"));

        EXPECT_TRUE(text.people().empty()) << kind;
        EXPECT_TRUE(text.cards().skipped.empty()) << kind;
        EXPECT_EQ(text.cards().groups, 1U) << kind;
    }
    EXPECT_EQ(ReadText(card30("KIND:individual\r\n")).people().size(), 1U);
    EXPECT_EQ(ReadText(card30("KIND:org\r\n")).people().size(), 1U);
    EXPECT_EQ(ReadText(card30("X-EVOLUTION-LIST:FALSE\r\n")).people().size(), 1U);
}

// Where a card stands.

TEST(CardReader, PlacesACardFromItsBeginToTheLineEndOfItsEnd)
{
    const ReadText text("junk\r\n" + named("Ann") + "\r\nmore junk\r\n" + named("Ben") + "rest");

    EXPECT_EQ(text.card(0), named("Ann"));
    EXPECT_EQ(text.card(1), named("Ben"));
    EXPECT_EQ(text.cards().ranges[0].lineEndSize, 2U);
}

TEST(CardReader, PlacesALastCardWithoutALineEnd)
{
    const ReadText text("BEGIN:VCARD\nN:;Ann\nEND:VCARD");

    EXPECT_EQ(text.card(0), "BEGIN:VCARD\nN:;Ann\nEND:VCARD");
    EXPECT_EQ(text.cards().ranges[0].lineEndSize, 0U);
}

TEST(CardReader, LeavesAByteOrderMarkOutsideOfTheCard)
{
    const ReadText text("\xEF\xBB\xBF" + named("Ann") + "\xEF\xBB\xBF" + named("Ben"));

    EXPECT_EQ(text.card(0), named("Ann"));
    EXPECT_EQ(text.card(1), named("Ben"));
}

TEST(CardReader, PassesOverAnyNumberOfByteOrderMarks)
{
    const ReadText text("\xEF\xBB\xBF\xEF\xBB\xBF" + named("Ann"));

    EXPECT_EQ(text.card(0), named("Ann"));
}

// Lines.

TEST(CardReader, ReadsAnyLineEnd)
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

TEST(CardReader, UnfoldsLinesWithoutTheirBlank)
{
    const ReadText text(card30("N:Lee;A\r\n nn\r\n\t  Marie;;;\r\nFN:x\r\n"));

    EXPECT_EQ(text.only().firstName, "Ann  Marie");
}

TEST(CardReader, UnfoldsInsideACharacterAndInsideANameOfAProperty)
{
    const ReadText text(
        card30("N:Lee;J\xC3\r\n \xB8rgen\r\nNICK\r\n NAME:Jo\r\nTEL;TYPE=ho\r\n me:1\r\n"));

    EXPECT_EQ(text.only().firstName, "J\u00F8rgen");
    EXPECT_EQ(text.only().nickname, "Jo");
    EXPECT_EQ(text.phones(), Texts{"_$!<Home>!$_=1"});
}

TEST(CardReader, KeepsTheBlankOfAFoldInVersion21)
{
    const ReadText text(card21("FN:Ann\r\n Marie Lee\r\n"));

    EXPECT_EQ(text.only().firstName, "Ann Marie Lee");
}

TEST(CardReader, UnfoldsByTheCardsVersionWhereverThatStands)
{
    const ReadText text("BEGIN:VCARD\nFN:Ann\n Marie\nVERSION:2.1\nEND:VCARD\n"
                        "BEGIN:VCARD\nFN:Ann\n Marie\nVERSION:3.0\nEND:VCARD\n");

    EXPECT_EQ(text.firstNames(), (Texts{"Ann Marie", "AnnMarie"}));
}

TEST(CardReader, NeverTakesAFoldedLineForBeginOrEnd)
{
    for (const auto* version : {"3.0", "4.0"}) {
        const ReadText text(card(version, "N:Lee;Ann\r\nNOTE:see\r\n END:VCARD\r\n BEGIN:VCARD\r\n"
                                          "\tEND:VCARD\r\nNICKNAME:Annie\r\n"));

        ASSERT_EQ(text.people().size(), 1U) << version;
        EXPECT_EQ(text.only().nickname, "Annie") << version;
        EXPECT_TRUE(text.cards().skipped.empty()) << version;
    }
}

TEST(CardReader, TakesAnIndentedEndInVersion21)
{
    const ReadText text("BEGIN:VCARD\nVERSION:2.1\nFN:Ann\n END:VCARD\n" + named("Ben"));

    EXPECT_EQ(text.firstNames(), (Texts{"Ann", "Ben"}));
}

TEST(CardReader, JoinsQuotedPrintableLinesAtTheirSoftBreaks)
{
    const ReadText text(
        card21("N;CHARSET=UTF-8;ENCODING=QUOTED-PRINTABLE:=C3=98ster;J=C3=B8r=\r\ngen=\r\n;;;\r\n"
               "NICKNAME;QUOTED-PRINTABLE:J=\r\n o\r\n"));

    EXPECT_EQ(text.only().lastName, "\u00D8ster");
    EXPECT_EQ(text.only().firstName, "J\u00F8rgen");
    EXPECT_EQ(text.only().nickname, "J o");
}

TEST(CardReader, EndsQuotedPrintableTextAtAnEmptyLine)
{
    const ReadText text(
        card21("N;ENCODING=QUOTED-PRINTABLE:Lee;Ann=\r\n\r\n"
               "NICKNAME;ENCODING=QUOTED-PRINTABLE:An=\r\n=6Eie=\r\n\r\nTEL:1\r\n"));

    EXPECT_EQ(text.only().firstName, "Ann");
    EXPECT_EQ(text.only().nickname, "Annie");
    EXPECT_EQ(text.phones(), Texts{"-=1"});
}

TEST(CardReader, TakesNoQuotedPrintableTextForLinesOfTheCard)
{
    const ReadText text(card21("NOTE;ENCODING=QUOTED-PRINTABLE:call=\r\nTEL:666=\r\nEND:VCARD=\r\n"
                               "BEGIN:VCARD\r\nTEL:1\r\n"));

    EXPECT_EQ(text.phones(), Texts{"-=1"});
    EXPECT_TRUE(text.cards().skipped.empty());
}

TEST(CardReader, DoesNotJoinAtAnEqualsSignThatIsNoSoftBreak)
{
    const ReadText text(card30("PHOTO;ENCODING=b:aGVsbG8=\r\nTEL:1\r\nX-SUM:1+1=\r\nTEL:2\r\n"));

    EXPECT_EQ(text.phones(), (Texts{"-=1", "-=2"}));
}

TEST(CardReader, ReadsPastUnfoldedBase64)
{
    const ReadText text(card21("PHOTO;ENCODING=BASE64;TYPE=JPEG:\r\n/9j/4AAQSkZJRgABAQAAAQAB\r\n"
                               "AAD/2wBDAAUDBAQEAwUEBAQ=\r\n\r\nTEL;CELL:1\r\n"));

    EXPECT_EQ(text.phones(), Texts{"_$!<Mobile>!$_=1"});
}

TEST(CardReader, TakesNoFoldedPropertyForBase64)
{
    const ReadText text(card30("N:Lee;Ann\r\nPHOTO;ENCODING=b:bm90aGluZw==\r\n"
                               "TEL;TYPE=WORK;\r\n TYPE=VOICE:1\r\nTEL:2\r\n"));
    EXPECT_EQ(text.phones(), (Texts{"_$!<Work>!$_=1", "-=2"}));

    const ReadText name(card30("N;ENCODING=b:TGVlO0Fubg==\r\nTEL;TYPE=WORK;\r\n TYPE=VOICE:1\r\n"));
    EXPECT_EQ(name.only().firstName, "Ann");
    EXPECT_EQ(name.phones(), Texts{"_$!<Work>!$_=1"});
}

// Nested cards.

TEST(CardReader, TakesACardInsideAgentAsPartOfTheCardAroundIt)
{
    const std::string whole =
        "BEGIN:VCARD\r\nVERSION:2.1\r\nN:Lee;Ann\r\nAGENT:\r\nBEGIN:VCARD\r\nVERSION:2.1\r\n"
        "N:Inner;Ike\r\nTEL:666\r\nEND:VCARD\r\nTEL:1\r\nEND:VCARD\r\n";
    const ReadText text(whole);

    EXPECT_EQ(text.firstNames(), Texts{"Ann"});
    EXPECT_EQ(text.phones(), Texts{"-=1"});
    EXPECT_EQ(text.card(0), whole);
}

TEST(CardReader, TakesAnAgentThatBeginsOnItsOwnLine)
{
    const ReadText text("BEGIN:VCARD\nVERSION:2.1\nN:Lee;Ann\nAGENT:BEGIN:VCARD\nN:Inner;Ike\n"
                        "END:VCARD\nTEL:1\nEND:VCARD\n");

    EXPECT_EQ(text.firstNames(), Texts{"Ann"});
    EXPECT_EQ(text.phones(), Texts{"-=1"});
}

TEST(CardReader, TakesAnAgentInsideAnAgent)
{
    const ReadText text("BEGIN:VCARD\nN:Lee;Ann\nAGENT:\nBEGIN:VCARD\nAGENT:\n\nBEGIN:VCARD\n"
                        "N:;C\nEND:VCARD\nEND:VCARD\nTEL:1\nEND:VCARD\n");

    EXPECT_EQ(text.firstNames(), Texts{"Ann"});
    EXPECT_EQ(text.phones(), Texts{"-=1"});
}

TEST(CardReader, LeavesAnAgentThatIsTextOrFoldedAlone)
{
    const ReadText text(
        "BEGIN:VCARD\nVERSION:3.0\nN:Lee;Ann\nAGENT:BEGIN:VCARD\\nN:;C\\nEND:VCARD\n"
        "AGENT:BEGIN:VCARD\n N:Inner;Ike\n END:VCARD\nAGENT:Somebody\nTEL:1\n"
        "END:VCARD\n" +
        named("Ben"));

    EXPECT_EQ(text.firstNames(), (Texts{"Ann", "Ben"}));
    EXPECT_EQ(text.phones(0), Texts{"-=1"});
}

TEST(CardReader, NestsNoCardThatDoesNotFollowAgentAtOnce)
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

// Names.

TEST(CardReader, TakesTheWholeFormattedNameWhereTheNameGivesNothing)
{
    for (const auto* name : {"", "N:\r\n", "N:;;;;\r\n", "N: ; ;;;\r\n", "N:;;Q.;Dr.;\r\n"}) {
        const ReadText text(card30(std::string(name) + "FN:Acme\\, Inc.\r\n"));

        EXPECT_EQ(text.only().firstName, "Acme, Inc.") << name;
        EXPECT_EQ(text.only().lastName, std::nullopt) << name;
    }
}

TEST(CardReader, PrefersTheNameToTheFormattedName)
{
    const ReadText text(card30("FN:Somebody Else\r\nN:Lee;;;;\r\n"));

    EXPECT_EQ(text.only().lastName, "Lee");
    EXPECT_EQ(text.only().firstName, "");
}

TEST(CardReader, TakesTheFirstOfSeveralNames)
{
    const ReadText text(card("4.0", "N;ALTID=1;LANGUAGE=jp:<A>;<B>;;;\r\n"
                                    "N;ALTID=1;LANGUAGE=en:Lee;Ann;;;\r\n"
                                    "NICKNAME:One\r\nNICKNAME:Two\r\nUID:1\r\nUID:2\r\n"));

    EXPECT_EQ(text.only().lastName, "<A>");
    EXPECT_EQ(text.only().nickname, "One");
    EXPECT_EQ(text.only().uid, "1");
}

TEST(CardReader, KeepsBlanksAtBothEnds)
{
    const ReadText text(card30("N: Lee ; Ann ;;;\r\nNICKNAME: A \r\nTEL: 1 \r\n"));

    EXPECT_EQ(text.only().lastName, " Lee ");
    EXPECT_EQ(text.only().firstName, " Ann ");
    EXPECT_EQ(text.only().nickname, " A ");
    EXPECT_EQ(text.phones(), Texts{"-= 1 "});
}

TEST(CardReader, TakesANicknamesWholeText)
{
    EXPECT_EQ(ReadText(card30("NICKNAME:Ann\\,Annie,A\\;B\r\n")).only().nickname, "Ann,Annie,A;B");
    EXPECT_EQ(ReadText(card30("NICKNAME:\r\n")).only().nickname, "");
}

TEST(CardReader, ResolvesEscapesOfVersion30And40)
{
    const ReadText text(card30("N:L\\;ee;A\\,n\\\\n\\;;;;\r\nNICKNAME:a\\nb\\Nc\\:d\\x\\\r\n"));

    EXPECT_EQ(text.only().lastName, "L;ee");
    EXPECT_EQ(text.only().firstName, "A,n\\n;");
    EXPECT_EQ(text.only().nickname, "a\nb\nc:d\\x\\");
}

TEST(CardReader, KnowsNoEscapedLineEndInVersion21)
{
    const ReadText text(card21("N:L\\;ee;C\\:\\new;;;\r\nNICKNAME:a\\nb\\\\c\r\n"));

    EXPECT_EQ(text.only().lastName, "L;ee");
    EXPECT_EQ(text.only().firstName, "C:\\new");
    EXPECT_EQ(text.only().nickname, "a\\nb\\c");
}

// Ids.

TEST(CardReader, TakesAUidAsItStands)
{
    EXPECT_EQ(ReadText(card30("UID:urn:uuid:12-34\r\n")).only().uid, "urn:uuid:12-34");
    EXPECT_EQ(ReadText(card30("UID: a\\,b \r\n")).only().uid, " a\\,b ");
    EXPECT_EQ(ReadText(card30("UID:\r\n")).only().uid, "");
}

// Encodings.

TEST(CardReader, ReadsCharsets)
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

TEST(CardReader, SplitsShiftJisOnlyAfterItIsDecoded)
{
    // The second byte of U+8868 is the backslash of ASCII.
    const ReadText text(card21("N;CHARSET=Shift_JIS:\x95\x5C;\x95\x5C;;;\r\n"));

    EXPECT_EQ(text.only().lastName, "\u8868");
    EXPECT_EQ(text.only().firstName, "\u8868");
}

TEST(CardReader, ReadsBase64OverSeveralLines)
{
    EXPECT_EQ(ReadText(card21("FN;ENCODING=BASE64:QW5u\r\nTWFy\r\naWU=\r\n\r\n")).only().firstName,
              "AnnMarie");
    EXPECT_EQ(ReadText(card30("FN;ENCODING=b:QW5u\r\n TWFyaWU=\r\n")).only().firstName, "AnnMarie");
}

TEST(CardReader, KeepsTextThatOnlySaysThatItIsBase64)
{
    EXPECT_EQ(ReadText(card21("FN;BASE64:Ann-Marie!\r\n")).only().firstName, "Ann-Marie!");
}

TEST(CardReader, IgnoresCharsetsInATextThatIsDecodedAlready)
{
    const ReadText text(card21("FN;CHARSET=ISO-8859-1:J\u00F8rgen\r\n"), CardReader::Text::Utf8);
    EXPECT_EQ(text.only().firstName, "J\u00F8rgen");

    const ReadText quoted(card21("FN;CHARSET=ISO-8859-1;ENCODING=QUOTED-PRINTABLE:J=F8rgen\r\n"),
                          CardReader::Text::Utf8);
    EXPECT_EQ(quoted.only().firstName, "J\u00F8rgen");
}

// Phones.

TEST(CardReader, LabelsAPhoneByItsGroupWhereverTheLabelStands)
{
    const ReadText text(card30("item1.TEL;TYPE=CELL:1\r\nITEM2.TEL:2\r\nitem3.TEL;TYPE=home:3\r\n"
                               "item4.TEL;TYPE=work:4\r\nNOTE:far\r\n"
                               "item1.X-ABLabel:_$!<Home>!$_\r\nitem2.X-ABLABEL:Ann\\, at sea\r\n"
                               "item3.X-ABLabel:\r\nitem9.X-ABLabel:Nobody's\r\n"));

    EXPECT_EQ(text.phones(),
              (Texts{"_$!<Home>!$_=1", "Ann, at sea=2", "_$!<Home>!$_=3", "_$!<Work>!$_=4"}));
}

TEST(CardReader, TakesTheFirstLabelOfAGroupThatIsNotEmpty)
{
    const ReadText text(
        card30("a.TEL:1\r\na.X-ABLabel:\r\na.X-ABLabel:One\r\na.X-ABLabel:Two\r\n"));

    EXPECT_EQ(text.phones(), Texts{"One=1"});
}

TEST(CardReader, KeepsThePhonesInTheCardsOrder)
{
    const ReadText text(card30("TEL;PREF=2:1\r\nTEL;TYPE=pref:2\r\nTEL;PREF=1:3\r\n"));

    EXPECT_EQ(text.phones(), (Texts{"-=1", "-=2", "-=3"}));
}

TEST(CardReader, CutsALeadingTelOffAndKeepsTheRestOfTheNumber)
{
    const ReadText text(card("4.0",
                             "TEL;VALUE=uri;TYPE=\"voice,home\":tel:+1-418-656-9254;ext=102\r\n"
                             "TEL;VALUE=uri:TEL:+1\r\nTEL:sip:tel:1\r\nTEL:\r\n"));

    EXPECT_EQ(text.phones(),
              (Texts{"_$!<Home>!$_=+1-418-656-9254;ext=102", "-=+1", "-=sip:tel:1", "-="}));
}

TEST(CardReader, ReadsParametersWithColonsAndSemicolonsInQuotes)
{
    const ReadText text(
        card("4.0", "TEL;X-A=\"x:y;z\";TYPE=work:1\r\nTEL;X-A=\"open;TYPE=home:2\r\n"));

    EXPECT_EQ(text.phones().front(), "_$!<Work>!$_=1");
    EXPECT_EQ(text.phones().back().substr(text.phones().back().size() - 2), "=2");
}

TEST(CardReader, MakesALabelOfATypeInAnyBytesUtf8)
{
    EXPECT_EQ(ReadText(card21("TEL;B\xFCro:1\r\n")).phones(), Texts{"B\u00FCro=1"});
}

// The date of the last change.

std::optional<long long> revision(std::string_view text)
{
    const auto date = readRevision(text);
    return date ? std::optional(static_cast<long long>(date->time_since_epoch().count()))
                : std::nullopt;
}

TEST(Revision, IsReadInBasicAndExtendedForm)
{
    for (const auto* text :
         {"20240501T100000Z", "2024-05-01T10:00:00Z", "2024-05-01T10:00:00", "20240501T100000",
          "2024-05-01t10:00:00z", " 2024-05-01T10:00:00Z ", "2024-05-01T10:00:00.999Z",
          "20240501T100000,5Z", "2024-05-01T12:00:00+02:00", "20240501T053000-0430",
          "2024-05-01T08:00:00-02"}) {
        EXPECT_EQ(revision(text), 1714557600) << text;
    }
}

TEST(Revision, IsMidnightUtcWhenItIsOnlyADate)
{
    EXPECT_EQ(revision("2024-05-01"), 1714521600);
    EXPECT_EQ(revision("20240501"), 1714521600);
}

TEST(Revision, IsNoneWhenItCannotBeRead)
{
    for (const auto* text :
         {"", "yesterday", "2024", "2024-13-01", "2024-02-30", "20240501T", "20240501T10",
          "20240501T250000Z", "20240501T106000Z", "20240501T100000Zulu", "2024-05-01 10:00:00",
          "20240501T100000+99", "20240501T100000+", "2024-05-01T10:00:00Z2",
          "0000-01-01T00:00:00+01:00", "9999-12-31T23:59:59-01:00"}) {
        EXPECT_EQ(revision(text), std::nullopt) << text;
    }
}

TEST(Revision, CountsALeapSecondIn)
{
    EXPECT_EQ(revision("2016-12-31T23:59:60Z"), revision("2017-01-01T00:00:00Z"));
}

}  // namespace
}  // namespace dunmora::test
