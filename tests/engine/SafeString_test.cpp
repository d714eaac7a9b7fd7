#include "engine/SafeString.h"

#include <gtest/gtest.h>

namespace dunmora::test {
namespace {

TEST(SafeString, TurnsAMissingTextIntoTheEmptyOne)
{
    EXPECT_EQ(SafeString(std::nullopt), "");
    EXPECT_NE(SafeString(std::nullopt).data(), nullptr);
}

TEST(SafeString, ReturnsAPresentTextAsItIs)
{
    EXPECT_EQ(SafeString(" Ann "), " Ann ");
    EXPECT_EQ(SafeString(""), "");
}

}  // namespace
}  // namespace dunmora::test
