#include "adapters/vcard/CardProperties.h"
#include "tests/adapters/vcard/ReadText.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace dunmora::test {
namespace {

std::vector<CardProperty> read(const std::string& text,
                               CardReader::Text kind = CardReader::Text::Bytes)
{
    return readProperties(text, kind).value_or(std::vector<CardProperty>());
}

/// Each property as "NAME[label]=component|component"; binary as "<media type, bytes>".
Texts shown(const std::vector<CardProperty>& properties)
{
    Texts texts;
    for (const auto& property : properties) {
        if (property.name == "VERSION") {
            continue;
        }
        auto text = property.name;
        text += property.label.empty() ? "" : "[" + property.label + "]";
        char separator = '=';
        for (const auto& component : property.components) {
            text += separator + component;
            separator = '|';
        }
        if (property.binary) {
            text += "<" + property.binary->mediaType + ", " + property.binary->bytes + ">";
        }
        texts.push_back(text);
    }
    return texts;
}

Texts in30(const std::string& properties)
{
    return shown(read(card30(properties)));
}

Texts in21(const std::string& properties)
{
    return shown(read(card21(properties)));
}

/// Only the notes of a card.
Texts notes(const std::string& text)
{
    const Texts names{"NOTE"};
    const auto properties = readPropertiesNamed(names, text, CardReader::Text::Bytes);
    return properties ? shown(*properties) : Texts{"no card"};
}

Texts in40(const std::string& properties)
{
    return shown(read(card("4.0", properties)));
}

TEST(CardProperties, TakeAMissingValueFromTheParameterThatHasIt)
{
    EXPECT_EQ(in40("ADR;LABEL=\"1 Main St, Rome\":;;;;;;\r\n"), Texts{"ADR=1 Main St, Rome"});
    EXPECT_EQ(in40("ADR;LABEL=\"1 Main St\":;;2 Main St;;;;\r\n"), Texts{"ADR=||2 Main St||||"});
    EXPECT_EQ(in30("X-SOCIALPROFILE;TYPE=twitter;x-user=ann:\r\n"),
              Texts{"X-SOCIALPROFILE[twitter]=ann"});
    EXPECT_EQ(in30("NOTE;LABEL=x:\r\n"), Texts{"NOTE="});
}

TEST(CardProperties, KeepTheOrderOfTheCard)
{
    EXPECT_EQ(in30("NOTE:x\r\nFN:Ann\r\nemail:ann@example.org\r\nX-Thing:y\r\n"),
              (Texts{"NOTE=x", "FN=Ann", "EMAIL=ann@example.org", "X-THING=y"}));
}

TEST(CardProperties, IncludeTheVersion)
{
    const auto properties = read(card21("FN:Ann\r\n"));

    ASSERT_EQ(properties.size(), 2U);
    EXPECT_EQ(properties[0], (CardProperty{"VERSION", {}, {"2.1"}, {}}));
}

TEST(CardProperties, AreNothingWithoutACompleteCard)
{
    EXPECT_FALSE(readProperties("", CardReader::Text::Bytes));
    EXPECT_FALSE(readProperties("BEGIN:VCARD\r\nFN:Ann\r\n", CardReader::Text::Bytes));
    EXPECT_FALSE(readProperties("BEGIN:VCARD\r\nEND:VCARD\r\n", CardReader::Text::Bytes));
}

TEST(CardProperties, AreThoseOfTheFirstCompleteCard)
{
    EXPECT_EQ(shown(read("BEGIN:VCARD\r\nFN:Broken\r\n" + named("Ann") + named("Ben"))),
              (Texts{"N=|Ann|||"}));
}

TEST(CardProperties, SplitStructuredValues)
{
    EXPECT_EQ(in30("N:Lee;Ann;;Dr.;\r\nADR:;;1 High Street\\; back;Oban;;;\r\n"
                   "ORG:Acme\\, Inc.;Sales\r\nGENDER:F;a\r\nNOTE:a;b\r\n"),
              (Texts{"N=Lee|Ann||Dr.|", "ADR=||1 High Street; back|Oban|||", "ORG=Acme, Inc.|Sales",
                     "GENDER=F|a", "NOTE=a;b"}));
}

TEST(CardProperties, SplitListsOfTexts)
{
    EXPECT_EQ(in30("NICKNAME;TYPE=work:Annie, A\\,L\r\nCATEGORIES:Friends,,Choir\r\n"),
              (Texts{"NICKNAME[work]=Annie", "NICKNAME[work]=A,L", "CATEGORIES=Friends",
                     "CATEGORIES=Choir"}));
    EXPECT_EQ(in30("NICKNAME:\r\nCATEGORIES:,\r\n"), (Texts{"NICKNAME=", "CATEGORIES="}));
}

TEST(CardProperties, ResolveEscapes)
{
    EXPECT_EQ(in30("NOTE:one\\ntwo\\, three\\\\\r\n"), (Texts{"NOTE=one\ntwo, three\\"}));
    EXPECT_EQ(in21("NOTE:one\\ntwo\\; three\r\n"), (Texts{"NOTE=one\\ntwo; three"}));
}

TEST(CardProperties, JoinFoldedLines)
{
    EXPECT_EQ(in30("NOTE:one\r\n  two\r\n three\r\nEMA\r\n IL:a@b\r\n"),
              (Texts{"NOTE=one twothree", "EMAIL=a@b"}));
    EXPECT_EQ(in21("NOTE:one\r\n two\r\n"), (Texts{"NOTE=one two"}));
}

TEST(CardProperties, DecodeQuotedPrintableTexts)
{
    EXPECT_EQ(in21("NOTE;ENCODING=QUOTED-PRINTABLE;CHARSET=ISO-8859-1:caf=E9=\r\n=0Abar\r\n"),
              (Texts{"NOTE=café\nbar"}));
    EXPECT_EQ(in21("ADR;HOME;QUOTED-PRINTABLE:;;Stra=C3=9Fe=\r\n 1;Kiel\r\n"),
              (Texts{"ADR[HOME]=||Straße 1|Kiel"}));
}

TEST(CardProperties, DecodeTextsInBase64)
{
    EXPECT_EQ(in21("NOTE;ENCODING=BASE64:aGVsbG8=\r\n"), (Texts{"NOTE=hello"}));
    EXPECT_EQ(in21("NOTE;CHARSET=ISO-8859-1;ENCODING=BASE64:Y2Fm6Q==\r\n"), (Texts{"NOTE=café"}));
}

TEST(CardProperties, AreUtf8WhateverTheCardHolds)
{
    EXPECT_EQ(in30("NOTE:caf\xE9\r\nX-\xE9;TYPE=\xE9:x\r\n"), (Texts{"NOTE=café", "X-é[é]=x"}));
}

TEST(CardProperties, DecodePhotosOfEveryVersion)
{
    EXPECT_EQ(in21("PHOTO;JPEG;ENCODING=BASE64:\r\n anBl\r\n Zw==\r\n\r\n"),
              (Texts{"PHOTO<image/jpeg, jpeg>"}));
    EXPECT_EQ(in30("PHOTO;ENCODING=b;TYPE=JPG:anBl\r\n Zw==\r\n"),
              (Texts{"PHOTO<image/jpeg, jpeg>"}));
    EXPECT_EQ(in40("PHOTO:data:image/PNG;base64,cG5n\r\n"), (Texts{"PHOTO<image/png, png>"}));
    EXPECT_EQ(in30("PHOTO;VALUE=uri:data:image/png\\;base64\\,cG5n\r\n"),
              (Texts{"PHOTO<image/png, png>"}));
    EXPECT_EQ(in30("PHOTO;ENCODING=b:anBlZw==\r\n"), (Texts{"PHOTO<, jpeg>"}));
}

TEST(CardProperties, DecodeUnfoldedBase64)
{
    EXPECT_EQ(in21("PHOTO;TYPE=GIF;ENCODING=BASE64:Z2lm\r\nZ2lm\r\nFN:Ann\r\n"),
              (Texts{"PHOTO<image/gif, gifgif>", "FN=Ann"}));
}

TEST(CardProperties, AreThoseThatTheContactFieldsComeFrom)
{
    // The last line continues the photo's, and is no number.
    const ReadText text(card21("PHOTO;ENCODING=BASE64:Z2lm\r\nZ2lm\r\n Z2.TEL:1\r\nTEL:2\r\n"));

    EXPECT_EQ(text.phones(), (Texts{"-=2"}));
    EXPECT_EQ(shown(read(text.card(0))), (Texts{"PHOTO=Z2lmZ2lm Z2.TEL:1", "TEL=2"}));
}

TEST(CardProperties, DecodeOtherMedia)
{
    EXPECT_EQ(
        in30("SOUND;TYPE=WAVE;ENCODING=b:d2F2\r\nKEY;TYPE=PGP;ENCODING=b:a2V5\r\n"
             "LOGO;MEDIATYPE=image/webp;ENCODING=b:eA==\r\n"),
        (Texts{"SOUND<audio/wave, wav>", "KEY<application/pgp, key>", "LOGO<image/webp, x>"}));
    EXPECT_EQ(in40("KEY;TYPE=work:data:application/pgp-keys;base64,a2V5\r\n"),
              (Texts{"KEY[work]<application/pgp-keys, key>"}));
}

TEST(CardProperties, KeepOtherBytesAsBytes)
{
    const auto properties = in30("X-PICTURE;ENCODING=b:/9j/\r\nX-ZERO;ENCODING=b:YQBi\r\n");

    EXPECT_EQ(properties, (Texts{"X-PICTURE<, \xFF\xD8\xFF>", std::string("X-ZERO<, a\0b>", 13)}));
}

TEST(CardProperties, KeepAddressesOfMediaAsTexts)
{
    EXPECT_EQ(in30("PHOTO;VALUE=uri;TYPE=JPEG:http://example.org/a.jpg\r\nKEY:mine\r\n"),
              (Texts{"PHOTO=http://example.org/a.jpg", "KEY=mine"}));
    EXPECT_EQ(in40("PHOTO:data:image/png;base64,?\r\nNOTE:data: 5\r\n"),
              (Texts{"PHOTO=data:image/png;base64,?", "NOTE=data: 5"}));
}

TEST(CardProperties, KeepDamagedBase64AsText)
{
    EXPECT_EQ(in30("PHOTO;ENCODING=b:a-b\r\n"), (Texts{"PHOTO=a-b"}));
}

TEST(CardProperties, AreLabelledByTheirGroup)
{
    EXPECT_EQ(in30("item1.EMAIL;TYPE=HOME:a@b\r\nitem2.URL:x\r\nNOTE:y\r\n"
                   "ITEM1.X-ABLabel:Cl\\,ub\r\nitem2.X-ABLabel:\r\n"),
              (Texts{"EMAIL[Cl,ub]=a@b", "URL=x", "NOTE=y"}));
}

TEST(CardProperties, AreLabelledByTheirTypes)
{
    EXPECT_EQ(in30("EMAIL;TYPE=INTERNET;TYPE=\"home,pref\";TYPE=x-old:a@b\r\n"),
              (Texts{"EMAIL[home, x-old]=a@b"}));
    EXPECT_EQ(in21("TEL;HOME;CELL;VOICE:1\r\n"), (Texts{"TEL[HOME, CELL]=1"}));
}

TEST(CardProperties, HaveNumbersAsTheContactFieldsHave)
{
    EXPECT_EQ(in40("TEL;VALUE=uri;TYPE=home:tel:+1-418-656-9254;ext=102\r\n"),
              (Texts{"TEL[home]=+1-418-656-9254;ext=102"}));
}

TEST(CardProperties, DoNotIncludeThoseOfAnAgent)
{
    EXPECT_EQ(in21("AGENT:\r\nBEGIN:VCARD\r\nVERSION:2.1\r\nEMAIL:agent@example.org\r\n"
                   "END:VCARD\r\nEMAIL:ann@example.org\r\n"),
              (Texts{"AGENT=BEGIN:VCARD\nVERSION:2.1\nEMAIL:agent@example.org\nEND:VCARD",
                     "EMAIL=ann@example.org"}));
    EXPECT_EQ(in21("AGENT:BEGIN:VCARD\r\nFN:Agent\r\nAGENT:\r\nBEGIN:VCARD\r\nFN:Inner\r\n"
                   "END:VCARD\r\nEND:VCARD\r\nFN:Ann\r\n"),
              (Texts{"AGENT=BEGIN:VCARD\nFN:Agent\nAGENT:\nBEGIN:VCARD\nFN:Inner\nEND:VCARD\n"
                     "END:VCARD",
                     "FN=Ann"}));
    EXPECT_EQ(in30("AGENT:BEGIN:VCARD\\nFN:Agent\\nEND:VCARD\\n\r\nFN:Ann\r\n"),
              (Texts{"AGENT=BEGIN:VCARD\nFN:Agent\nEND:VCARD\n", "FN=Ann"}));
    EXPECT_EQ(in30("AGENT;VALUE=uri:CID:agent@example.org\r\n"),
              (Texts{"AGENT=CID:agent@example.org"}));
}

TEST(CardProperties, OfTextInUtf8IgnoreItsCharset)
{
    EXPECT_EQ(shown(read(card21("NOTE;CHARSET=ISO-8859-1:café\r\n"), CardReader::Text::Utf8)),
              (Texts{"NOTE=café"}));
}

TEST(CardProperties, WithANameAreReadAsAmongAll)
{
    EXPECT_EQ(notes(card30("N:Lee;Ann\r\nnote:a\r\nFN:Ann\r\nNOTE;TYPE=home:b\r\n")),
              (Texts{"NOTE=a", "NOTE[home]=b"}));
    EXPECT_EQ(notes(card30("FN:Ann\r\n")), Texts());
    EXPECT_EQ(notes(card21("FN:Ann\r\nNOTE:a\\nb\r\n")), Texts{"NOTE=a\\nb"});
    EXPECT_EQ(notes(card30("1.X-ABLABEL:x\r\n1.NOTE:a\r\n")), Texts{"NOTE[x]=a"});
    EXPECT_EQ(notes("BEGIN:VCARD\r\nFN:Ann\r\nEND:VCARD\r\n"), Texts());
    EXPECT_EQ(notes("FN:Ann\r\n"), Texts{"no card"});
}

TEST(CardProperties, WithANameAreNotReadFromOtherProperties)
{
    EXPECT_EQ(notes(card30("FN:Ann\r\n NOTE:a\r\n")), Texts());
    EXPECT_EQ(notes(card21("FN;QUOTED-PRINTABLE:Ann=\r\nNOTE:a\r\n")), Texts());
    EXPECT_EQ(notes(card21("PHOTO;BASE64:QUJD\r\nNOTE\r\n :a\r\n")), Texts());
    EXPECT_EQ(notes(card21("PHOTO;X=\"y:z\";BASE64:QUJD\r\nNOTE\r\n :a\r\n")), Texts());
    EXPECT_EQ(notes(card21("AGENT:\r\nBEGIN:VCARD\r\nNOTE:a\r\nEND:VCARD\r\n")), Texts());
    EXPECT_EQ(notes(card21("AGENT:\r\nFN:Ann\r\nBEGIN:VCARD\r\nNOTE:a\r\n")), Texts{"NOTE=a"});
}

TEST(CardProperties, AreReadFromListsToo)
{
    EXPECT_EQ(in40("KIND:group\r\nFN:Choir\r\nMEMBER:urn:uuid:1\r\n"),
              (Texts{"KIND=group", "FN=Choir", "MEMBER=urn:uuid:1"}));
}

}  // namespace
}  // namespace dunmora::test
