#include "adapters/vcard/OrdinaryLine.h"

#include "tests/adapters/vcard/ReadText.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace dunmora::test {

TEST(OrdinaryLine, HasANameDirectlyBeforeItsValueOrParameters)
{
    const auto name = ordinaryHeadOf("n:Lee;Ann");
    const auto phone = ordinaryHeadOf("TEL;TYPE=HOME:1");
    const auto other = ordinaryHeadOf("X-MY-2ND-NAME:x");

    ASSERT_TRUE(name && phone && other);
    EXPECT_EQ(name->kind, PropertyKind::Name);
    EXPECT_EQ(name->nameEnd, 1U);
    EXPECT_EQ(phone->kind, PropertyKind::Phone);
    EXPECT_EQ(phone->nameEnd, 3U);
    EXPECT_EQ(other->kind, PropertyKind::Ignored);
    EXPECT_EQ(other->nameEnd, 13U);
}

TEST(OrdinaryLine, HasTheKindOfItsName)
{
    for (const std::string_view name :
         {"N", "FN", "TEL", "UID", "REV", "KIND", "AGENT", "VERSION", "NICKNAME", "X-ABLABEL",
          "X-EVOLUTION-LIST", "X-ADDRESSBOOKSERVER-KIND", "ORG", "NICKNAMES", "X-ABLABELS"}) {
        const auto head = ordinaryHeadOf(std::string(name) + ":x");
        ASSERT_TRUE(head) << name;
        EXPECT_EQ(head->kind, propertyKind(name)) << name;
        EXPECT_EQ(head->nameEnd, name.size()) << name;
    }
    EXPECT_EQ(ordinaryHeadOf("x-abLabel:x")->kind, PropertyKind::Label);
}

TEST(OrdinaryLine, IsNoOtherLine)
{
    for (const std::string_view line :
         {"", ":", ";x:1", "N", "NICKNAME", " N:x", "\tN:x", "N :x", "item1.N:x", "N=x:1", "N_X:1",
          "\xEF\xBB\xBFN:x", "\xC3\x98:x", "N\"x:1", "N\\:x", "BEGIN:VCARD", "begin;x:y",
          "END:VCARD", "end:x"}) {
        EXPECT_FALSE(ordinaryHeadOf(line)) << line;
    }
    EXPECT_FALSE(ordinaryHeadOf(std::string_view("\0N:x", 4)));
}

TEST(OrdinaryLine, BelongsToTheVersionAndTheEncodingOfItsCard)
{
    const ReadText plain(card30("N:Lee;An\\nn\\;\r\nNICKNAME:J\xF8\r\n"));
    EXPECT_EQ(plain.only().firstName, "An\nn;");
    EXPECT_EQ(plain.only().nickname, "J\u00F8");

    const ReadText old(card21("N:Lee;An\\nn\r\nNICKNAME;CHARSET=UTF-16BE:ab\r\n"));
    EXPECT_EQ(old.only().firstName, "An\\nn");
    EXPECT_EQ(old.only().nickname, "\u6162");

    const ReadText quoted(card21("NICKNAME;ENCODING=QUOTED-PRINTABLE:J=C3=B8\r\n"));
    EXPECT_EQ(quoted.only().nickname, "J\u00F8");
}

TEST(OrdinaryLine, AloneMakesACardAPerson)
{
    const ReadText text("BEGIN:VCARD\nX-A;b=c:\nEND:VCARD\nBEGIN:VCARD\nX-A;b=c\nEND:VCARD\n");

    EXPECT_EQ(text.people().size(), 1U);
    EXPECT_EQ(text.cards().skipped.size(), 1U);
}

TEST(OrdinaryLine, IsNotThePropertyOfANestedCard)
{
    const ReadText text(card30("N:Lee;Ann\r\nAGENT:\r\nBEGIN:VCARD\r\nTEL:1\r\nEND:VCARD\r\n"));
    EXPECT_FALSE(text.only().phones.has_value());

    const ReadText broken(card30("AGENT:\r\nTEL:1\r\n" + named("Bob")));
    EXPECT_EQ(broken.firstNames(), Texts{"Bob"});
    EXPECT_EQ(broken.cards().skipped.size(), 1U);
}

TEST(OrdinaryLine, EndsWhereItsParametersAllow)
{
    const ReadText quotes(card30("NICKNAME;X-A=\"b:c\":Annie\r\nTEL;TYPE=\"HOME\":1\r\n"));
    EXPECT_EQ(quotes.only().nickname, "Annie");
    EXPECT_EQ(quotes.phones(), Texts{"_$!<Home>!$_=1"});

    const ReadText base64(card21("NOTE;ENCODING=BASE64:aGVs\r\nN\r\n :Lee;Ann\r\nTEL:1\r\n"));
    EXPECT_EQ(base64.phones(), Texts{"-=1"});
    EXPECT_FALSE(base64.only().firstName.has_value());
}

}  // namespace dunmora::test
