#include "adapters/vcard/Property.h"

#include "tests/adapters/vcard/ReadText.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace dunmora::test {

namespace {

Property propertyOf(std::string_view line)
{
    return splitProperty(line, headOf(line));
}

std::string unescape(std::string_view text, VCardVersion version)
{
    std::string unescaped;
    appendUnescaped(unescaped, text, version);
    return unescaped;
}

TEST(Property, HasAGroupANameParametersAndAValue)
{
    const auto property = propertyOf(" item1.tel ;TYPE=\"a;b:c\";PREF=1:tel:5");

    EXPECT_EQ(property.kind, PropertyKind::Phone);
    EXPECT_EQ(property.group, "item1");
    EXPECT_EQ(property.parameters, ";TYPE=\"a;b:c\";PREF=1");
    EXPECT_EQ(property.value, "tel:5");
}

TEST(Property, IsIncompleteWithoutAColon)
{
    EXPECT_FALSE(headOf("TEL").isComplete);
    EXPECT_FALSE(headOf("TEL;TYPE=HOME").isComplete);
    EXPECT_TRUE(headOf("TEL;TYPE=\"HOME:1").isComplete);
    EXPECT_TRUE(headOf(":").isComplete);
}

TEST(Property, NamesItsEncodingAndCharset)
{
    const auto quoted = propertyOf("N;CHARSET=\"cp437\";ENCODING=quoted-printable:x").encoding;
    EXPECT_EQ(quoted.transfer, TransferEncoding::QuotedPrintable);
    EXPECT_EQ(quoted.charset, "cp437");
    EXPECT_EQ(propertyOf("N;BASE64:x").encoding.transfer, TransferEncoding::Base64);
    EXPECT_EQ(propertyOf("N;ENCODING=B:x").encoding.transfer, TransferEncoding::Base64);
    EXPECT_EQ(propertyOf("N;B:x").encoding.transfer, TransferEncoding::Plain);
}

TEST(Property, DelimitsACardWithBeginAndEnd)
{
    EXPECT_EQ(delimiterOf(" begin : vcard\t"), Delimiter::Begin);
    EXPECT_EQ(delimiterOf("END:VCARD"), Delimiter::End);
    for (const auto* line :
         {"", "BEGIN", "BEGIN:VCARDS", "BEGIN:VEVENT", "BEGINS:VCARD", "N:VCARD"}) {
        EXPECT_EQ(delimiterOf(line), Delimiter::None) << line;
    }
}

TEST(Property, ListsItsParameters)
{
    std::string_view parameters = "; type = \"home;work\" ;PREF";

    const auto type = takeParameter(parameters);
    EXPECT_EQ(type.name, "type");
    EXPECT_EQ(type.value, "\"home;work\"");
    const auto bare = takeParameter(parameters);
    EXPECT_EQ(bare.name, "");
    EXPECT_EQ(bare.value, "PREF");
    EXPECT_TRUE(parameters.empty());
}

TEST(Property, SplitsAValueAtSemicolonsThatAreNotEscaped)
{
    std::string_view value = R"(a\;b;c\\;)";

    EXPECT_EQ(takeComponent(value), "a\\;b");
    EXPECT_EQ(takeComponent(value), "c\\\\");
    EXPECT_EQ(takeComponent(value), "");
    EXPECT_TRUE(value.empty());
}

TEST(Property, ResolvesEscapesOfItsVersion)
{
    EXPECT_EQ(unescape("a\\,b\\;c\\:d\\\\e\\nf\\x\\", VCardVersion::Later), "a,b;c:d\\e\nf\\x\\");
    EXPECT_EQ(unescape("a\\nb\\;", VCardVersion::V21), "a\\nb;");
}

TEST(Property, AllowsColonsAndSemicolonsInQuotedParameters)
{
    const ReadText text(
        card("4.0", "TEL;X-A=\"x:y;z\";TYPE=work:1\r\nTEL;X-A=\"open;TYPE=home:2\r\n"));

    EXPECT_EQ(text.phones().front(), "_$!<Work>!$_=1");
    EXPECT_EQ(text.phones().back().substr(text.phones().back().size() - 2), "=2");
}

}  // namespace

}  // namespace dunmora::test
