#include "review/PhoneKeys.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora::test {
namespace {

bool shareOne(const std::vector<std::string>& some, const std::vector<std::string>& others)
{
    return std::find_first_of(some.begin(), some.end(), others.begin(), others.end()) != some.end();
}

std::vector<std::string> endingsOf(const PhoneKeys& keys)
{
    std::vector<std::string> endings;
    for (std::size_t i = 0; i < keys.endings; ++i) {
        endings.emplace_back(keys.ending(i));
    }
    return endings;
}

bool areSame(std::string_view a, std::string_view b)
{
    const auto one = phoneKeys(a);
    const auto other = phoneKeys(b);
    return shareOne(one.texts, other.texts) ||
           (one.kind != other.kind && shareOne(endingsOf(one), endingsOf(other)));
}

TEST(PhoneKeys, IgnorePunctuation)
{
    EXPECT_TRUE(areSame("555-0100", "555 0100"));
    EXPECT_TRUE(areSame("(030) 123/45.67", "0301234567"));
    EXPECT_TRUE(areSame("030\u00A0123\u20114567", "030 1234567"));
    EXPECT_TRUE(areSame("\u202A+49 30 1234567\u202C", "+49301234567"));
    EXPECT_TRUE(areSame("tel:+49-30-1234567", "TEL:+49301234567"));
}

TEST(PhoneKeys, AreEqualForEqualDigitsOnly)
{
    EXPECT_FALSE(areSame("555-0100", "555-0101"));
    EXPECT_FALSE(areSame("555-0100", "0555-0100"));
    EXPECT_FALSE(areSame("1555-0100", "555-0100"));
    EXPECT_TRUE(areSame("+15550100", "15550100"));
}

TEST(PhoneKeys, FindANationalNumberInAnInternationalOne)
{
    EXPECT_TRUE(areSame("+49 30 1234567", "030 1234567"));
    EXPECT_TRUE(areSame("0049 30 1234567", "030 1234567"));
    EXPECT_TRUE(areSame("0049 30 1234567", "+49 30 1234567"));
    EXPECT_TRUE(areSame("+1 212 555 0100", "212 555 0100"));
    EXPECT_TRUE(areSame("+1 212 555 0100", "555 0100"));
    EXPECT_TRUE(areSame("+39 06 1234567", "06 1234567"));
    EXPECT_FALSE(areSame("+49 30 1234567", "00 1234567"));
    EXPECT_FALSE(areSame("+49 30 1234567", "031 1234567"));
}

TEST(PhoneKeys, NeedSevenDigitsForThat)
{
    EXPECT_TRUE(areSame("+49 123 4567", "1234567"));
    EXPECT_FALSE(areSame("+49 30 123456", "123456"));
    EXPECT_FALSE(areSame("+49 30 123456", "0123456"));
    EXPECT_FALSE(areSame("0012", "12"));
    EXPECT_TRUE(areSame("0012", "+12"));
}

TEST(PhoneKeys, DistinguishTwoInternationalNumbers)
{
    EXPECT_FALSE(areSame("+1 212 555 0100", "+44 212 555 0100"));
    EXPECT_FALSE(areSame("+49 30 1234567", "+30 1234567"));
    EXPECT_FALSE(areSame("0049 30 1234567", "+30 1234567"));
}

TEST(PhoneKeys, DistinguishExtensions)
{
    EXPECT_FALSE(areSame("555-0100 x12", "555-0100"));
    EXPECT_FALSE(areSame("555-0100 x12", "555-0100 x13"));
    EXPECT_FALSE(areSame("555-0100 x12", "555-010012"));
    EXPECT_TRUE(areSame("tel:+1-212-555-0100;ext=12", "212 555 0100 Ext. 12"));
    EXPECT_TRUE(areSame("555 0100 ext 12", "555 0100 x12"));
    EXPECT_FALSE(areSame("+1 212 555 0100 x12", "212 555 0100"));
}

TEST(PhoneKeys, CompareEverythingElseAsText)
{
    EXPECT_TRUE(areSame("1-800-FLOWERS", "1-800-FLOWERS"));
    EXPECT_FALSE(areSame("1-800-FLOWERS", "1-800-3569377"));
    EXPECT_FALSE(areSame("*31#5550100", "5550100"));
    EXPECT_FALSE(areSame("555+0100", "5550100"));
    EXPECT_FALSE(areSame("\u0665\u0665\u0665\u0660\u0661\u0660\u0660", "5550100"));
    EXPECT_TRUE(areSame("\u0665\u0665\u0665", "\u0665\u0665\u0665"));
    EXPECT_FALSE(areSame("555\xFF", "555"));
    EXPECT_FALSE(areSame("-", "()"));
    EXPECT_FALSE(areSame("tel:5550100;phone-context=+1", "5550100"));
}

TEST(PhoneKeys, AreFewForEveryText)
{
    const std::string manyDigits(1'000'000, '5');

    EXPECT_EQ(phoneKeys("+" + manyDigits).endings, 0U);
    EXPECT_TRUE(areSame(manyDigits, manyDigits));
    EXPECT_LT(phoneKeys("+123456789012345678901234").endings, 25U);
}

}  // namespace
}  // namespace dunmora::test
