#include "adapters/vcard/ComparableCard.h"

#include <gtest/gtest.h>

#include <string>

namespace dunmora::test {
namespace {

TEST(ComparableCard, IgnoresWhatAnAddressBookChangesByItself)
{
    EXPECT_EQ(
        comparableCard("BEGIN:VCARD\nVERSION:2.1\nUID:a\nTEL;HOME;VOICE:555\nNOTE:one tw\n o\n"
                       "END:VCARD"),
        comparableCard("BEGIN:VCARD\r\nVERSION:3.0\r\nNOTE:one two\r\n"
                       "TEL;X-EVOLUTION-E164=555,\"+1\";TYPE=\"voice,home\":555\r\n"
                       "X-EVOLUTION-WEBDAV-ETAG:5\r\nREV:2024\r\nUID:b\r\n"
                       "X-ABUID:b\r\nEND:VCARD\r\n"));
}

TEST(ComparableCard, DistinguishesCardsThatHoldSomethingElse)
{
    const std::string card =
        "BEGIN:VCARD\nitem1.TEL;TYPE=HOME:555\nitem1.X-ABLabel:Boat\nEND:VCARD";
    for (const auto* const other :
         {"BEGIN:VCARD\nitem1.TEL;TYPE=HOME:556\nitem1.X-ABLabel:Boat\nEND:VCARD",
          "BEGIN:VCARD\nitem1.TEL;TYPE=WORK:555\nitem1.X-ABLabel:Boat\nEND:VCARD",
          "BEGIN:VCARD\nitem1.TEL;TYPE=HOME:555\nitem2.X-ABLabel:Boat\nEND:VCARD",
          "BEGIN:VCARD\nitem1.TEL;TYPE=HOME:555\nEND:VCARD",
          "BEGIN:VCARD\nitem1.TEL;TYPE=HOME;X-A=1:555\nitem1.X-ABLabel:Boat\nEND:VCARD"}) {
        EXPECT_NE(comparableCard(card), comparableCard(other)) << other;
    }
}

}  // namespace
}  // namespace dunmora::test
