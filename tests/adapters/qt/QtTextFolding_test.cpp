#include "adapters/qt/QtTextFolding.h"

#include <gtest/gtest.h>

namespace dunmora::test {

namespace {

TEST(QtTextFolding, IgnoresCaseInEveryScript)
{
    const QtTextFolding folding;

    EXPECT_EQ(folding.folded("Ann LEE"), "ann lee");
    EXPECT_EQ(folding.folded("ZO\u00CB"), "zo\u00EB");
    EXPECT_EQ(folding.folded("\u0410\u041D"), "\u0430\u043D");
}

TEST(QtTextFolding, IgnoresHowACharacterIsComposed)
{
    const QtTextFolding folding;

    EXPECT_EQ(folding.folded("Zoe\u0308"), folding.folded("Zo\u00EB"));
    EXPECT_EQ(folding.folded("E\u0301"), "\u00E9");
}

TEST(QtTextFolding, FoldsCompatibleCharacters)
{
    const QtTextFolding folding;

    EXPECT_EQ(folding.folded("\u212A"), "k") << "the Kelvin sign";
    EXPECT_EQ(folding.folded("\uFF21\uFF11"), "a1") << "full width";
}

TEST(QtTextFolding, ChangesNothingWhenFoldingAgain)
{
    const QtTextFolding folding;

    // Case folding decomposes the first, and composing brings back an upper-case letter.
    for (const auto* text : {"\u0130", "\u1E9E", "\u03D2\u0301", "\u01F0"}) {
        const auto once = folding.folded(text);
        EXPECT_EQ(folding.folded(once), once) << text;
    }
}

TEST(QtTextFolding, ReadsTheDigitsOfEveryScript)
{
    const QtTextFolding folding;

    EXPECT_EQ(folding.digits("+1 (555) 0100"), "15550100");
    EXPECT_EQ(folding.digits("\u0661-\u0662 \u096A"), "124");
    EXPECT_EQ(folding.digits("\uFF11\uFF12"), "12");
    EXPECT_EQ(folding.digits("none"), "");
}

TEST(QtTextFolding, ReplacesInvalidBytes)
{
    EXPECT_EQ(QtTextFolding().folded("A\xFF"), "a\uFFFD");
    EXPECT_EQ(QtTextFolding().digits("1\xFF"
                                     "2"),
              "12");
}

}  // namespace

}  // namespace dunmora::test
