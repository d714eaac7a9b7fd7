#include "adapters/vcard/ForeignFile.h"

#include "adapters/vcard/AddedCards.h"
#include "adapters/vcard/TextDecoding.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace dunmora::test {
namespace {

using namespace std::string_literals;

constexpr auto kCsv = "a CSV file, not a vCard file";
constexpr auto kLdif = "an LDIF file, not a vCard file";
constexpr auto kZip = "a zip archive, not a vCard file";
constexpr auto kUnknown = "not a vCard file";

bool isForeignText(std::string_view content)
{
    return isForeign(cardFileOf("people.vcf", content));
}

std::string littleEndian(std::string_view text)
{
    return utf8ToUtf16(text, FileEncoding::Utf16LittleEndian);
}

std::string bigEndian(std::string_view text)
{
    return utf8ToUtf16(text, FileEncoding::Utf16BigEndian);
}

TEST(ForeignFile, HasNoLineThatBeginsACard)
{
    for (const auto& content :
         {"Name,Phone\nAnn,1\n"s, "END:VCARD\r\n"s, "Write BEGIN:VCARD first.\n"s,
          "BEGIN:VCALENDAR\r\nEND:VCALENDAR\r\n"s, "\0"s, "\xFF\xFE" + littleEndian("Ann\r\n")}) {
        EXPECT_TRUE(isForeignText(content)) << content;
    }
}

TEST(ForeignFile, IsNotBlank)
{
    for (const auto& content :
         {""s, " \t\r\n\f"s, "\xEF\xBB\xBF\r\n"s, "\xFF\xFE"s, "\xFE\xFF" + bigEndian("\r\n")}) {
        EXPECT_FALSE(isForeignText(content)) << content;
    }
}

TEST(ForeignFile, IsNoFileInWhichACardBeginsAsTheReaderReadsIt)
{
    const auto end = "\r\nN:Lee;Ann\r\nEND:VCARD\r\n"s;
    for (const auto& content :
         {"BEGIN:VCARD" + end, "begin:vcard" + end, "BEGIN : VCARD \t" + end,
          "\xEF\xBB\xBF" + ("BEGIN:VCARD" + end), "\0\0"s + "BEGIN:VCARD" + end,
          "A note\r\nBEGIN:VCARD" + end, "\xFF\xFE" + littleEndian("BEGIN:VCARD" + end),
          bigEndian("Begin:vCard" + end)}) {
        EXPECT_FALSE(isForeignText(content)) << content;
    }
}

TEST(ForeignFile, IsNoFileWhoseCardsBreakOffOrAreLists)
{
    EXPECT_FALSE(isForeignText("BEGIN:VCARD"));
    EXPECT_FALSE(isForeignText("BEGIN:VCARD\r\nN:Lee;A"));
    EXPECT_FALSE(isForeignText("BEGIN:VCARD\r\nEND:VCARD\r\n"));
    EXPECT_FALSE(isForeignText("BEGIN:VCARD\r\nKIND:group\r\nFN:Us\r\nEND:VCARD\r\n"));
}

TEST(ForeignFile, IsDescribedAsCsvWhateverSeparatesTheFields)
{
    for (const auto* const content : {
             "Name,Given Name,Family Name,Phone 1 - Value\r\nAnn Lee,Ann,Lee,555-0101\r\n",
             "Vorname;Nachname\nAnn;Lee\n",
             "First\tLast\tPhone\rAnn\tLee\t1\r",
             "\"First Name\",\"Last Name\"\r\n\"Ann\",\"Lee\"\r\n",
             "sep=;\r\nVorname;Nachname\r\nAnn;Lee\r\n",
             "\xEF\xBB\xBF\"First\",Last\nAnn,Lee\n",
             "First,Last\n\nAnn,Lee",
         }) {
        EXPECT_EQ(describeForeign(content), kCsv) << content;
    }
}

TEST(ForeignFile, IsDescribedAsCsvWithQuotedFields)
{
    EXPECT_EQ(describeForeign("Name,Address\n\"Lee, Ann\",\"1 High St,\nTown\"\n"
                              "\"Ben \"\"B\"\" Lee\",\"2 High St\"\n"),
              kCsv);
}

TEST(ForeignFile, IsDescribedAsCsvInUtf16)
{
    const auto text = "First;Last\r\nZo\xC3\xAB;Lee\r\n"s;

    EXPECT_EQ(describeForeign("\xFF\xFE" + littleEndian(text)), kCsv);
    EXPECT_EQ(describeForeign("\xFE\xFF" + bigEndian(text)), kCsv);
    EXPECT_EQ(describeForeign(littleEndian(text)), kCsv);
    EXPECT_EQ(describeForeign(bigEndian(text)), kCsv);
}

TEST(ForeignFile, IsDescribedAsCsvWithoutRows)
{
    EXPECT_EQ(describeForeign("Name,Given Name,Family Name\r\n"), kCsv);
    EXPECT_EQ(describeForeign("Name,Given Name,Family Name"), kCsv);
}

TEST(ForeignFile, IsDescribedByItsBeginningHoweverLargeItIs)
{
    auto content = "First,Last,Notes\n"s;
    while (content.size() < 100'000) {
        content += "Ann,Lee,\"a note, and another\"\n";
    }

    EXPECT_EQ(describeForeign(content), kCsv);
    // A first row that does not end in the sample is no reason to doubt the header.
    EXPECT_EQ(describeForeign("First,Last,Photo\nAnn,Lee,\"" + std::string(100'000, 'a')), kCsv);
}

TEST(ForeignFile, IsDescribedAsLdif)
{
    for (const auto* const content : {
             "dn: cn=Ann Lee,mail=ann@example.com\nobjectclass: top\ncn: Ann Lee\n",
             "dn:: Y249WmXDqyBMZWU=\ncn: Ann\n",
             "version: 1\n\ndn: cn=Ann\ncn: Ann\n",
             "# exported, in 2024\r\n\r\nVersion:1\r\nDN: cn=Ann\r\n",
             "\xEF\xBB\xBF\ndn: cn=Ann,o=Lee\n",
         }) {
        EXPECT_EQ(describeForeign(content), kLdif) << content;
    }
}

TEST(ForeignFile, IsDescribedAsZip)
{
    EXPECT_EQ(describeForeign("PK\3\4\x14\0\0"s), kZip);
    EXPECT_EQ(describeForeign("PK\5\6"s + std::string(18, '\0')), kZip);
    EXPECT_EQ(describeForeign("PK\7\x08PK\3\4"s), kZip);
}

TEST(ForeignFile, IsNotNamedWhenItsKindIsUnknown)
{
    for (const auto& content : {
             "Hello"s,
             "Dear Ann,\nthese are my contacts.\nBen\n"s,
             "One, two.\n"s,
             "<html><body>Sign in, please; then try again.</body></html>\n"s,
             "{\"people\":[{\"first\":\"Ann\",\"last\":\"Lee\"}]}"s,
             "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nEND:VCALENDAR\r\n"s,
             "version: 2, maybe\n"s,
             "a,b\0c\na,b\nc,d\n"s,
             "\xFF\xD8\xFF\xE0\0\x10JFIF\0"s,
             std::string(1000, '\0'),
             "PK"s,
         }) {
        EXPECT_EQ(describeForeign(content), kUnknown) << content;
    }
}

}  // namespace
}  // namespace dunmora::test
