#include "text/Ascii.h"

#include <gtest/gtest.h>

namespace dunmora::test {
namespace {

TEST(Trimmed, RemovesBlanksAtBothEndsOnly)
{
    EXPECT_EQ(trimmed(" \ta b\t "), "a b");
    EXPECT_EQ(trimmed(" \t"), "");
    EXPECT_EQ(trimmed("\na\r"), "\na\r");
}

TEST(EqualsIgnoringCase, FoldsAsciiLettersOnly)
{
    EXPECT_TRUE(equalsIgnoringCase("vCard", "VCARD"));
    EXPECT_FALSE(equalsIgnoringCase("vCard", "vCards"));
    EXPECT_FALSE(equalsIgnoringCase("\xC3\xA4", "\xC3\x84"));
    EXPECT_FALSE(equalsIgnoringCase("[", "{"));
}

}  // namespace
}  // namespace dunmora::test
