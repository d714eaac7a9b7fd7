#include "programs/dunmora-cli/TerminalText.h"

#include <gtest/gtest.h>

#include <clocale>

namespace dunmora::test {
namespace {

TEST(DisplayWidth, CountsTheColumnsOfATerminal)
{
    EXPECT_EQ(displayWidth(""), 0U);
    EXPECT_EQ(displayWidth("Ann"), 3U);
    EXPECT_EQ(displayWidth("Zoë"), 3U);
    EXPECT_EQ(displayWidth("Zoe\u0308"), 3U);
    EXPECT_EQ(displayWidth("王小明"), 6U);
    EXPECT_EQ(displayWidth("😀"), 2U);
    EXPECT_EQ(displayWidth("␛\uFFFD"), 2U);
}

TEST(DisplayWidth, DoesNotDependOnTheUsersLocale)
{
    const std::string before = std::setlocale(LC_ALL, nullptr);  // NOLINT(concurrency-mt-unsafe)
    std::setlocale(LC_ALL, "C");                                 // NOLINT(concurrency-mt-unsafe)

    EXPECT_EQ(displayWidth("王"), 2U);

    std::setlocale(LC_ALL, before.c_str());  // NOLINT(concurrency-mt-unsafe)
}

}  // namespace
}  // namespace dunmora::test
