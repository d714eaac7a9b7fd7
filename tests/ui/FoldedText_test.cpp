#include "ui/FoldedText.h"

#include "platform/TextFolding.h"
#include "text/DisplayText.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <cstddef>

namespace dunmora::test {

namespace {

/// Shows which texts it has been asked about.
class MarkedFolding final : public TextFolding {
public:
    std::string folded(std::string_view utf8) const override
    {
        return "<" + std::string(utf8) + ">";
    }
    std::string digits(std::string_view /*utf8*/) const override { return {}; }
};

std::string folded(std::string_view text)
{
    std::string out = "Before ";
    appendFolded(out, text, MarkedFolding());
    return out;
}

std::string expected(std::string_view text)
{
    if (!isPlainAscii(text)) {
        return "Before <" + windowText(text) + ">";
    }
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return "Before " + lower;
}

TEST(FoldedText, IsLowerCase)
{
    EXPECT_EQ(folded("Ann Marie O'LEE-4711 @[`{"), "Before ann marie o'lee-4711 @[`{");
    EXPECT_EQ(folded(""), "Before ");
}

TEST(FoldedText, IsFoldedByThePortWhenAnyByteAtAnyPlaceIsNotPlain)
{
    constexpr std::size_t kMaxSize = 20;
    for (std::size_t size = 1; size <= kMaxSize; ++size) {
        for (std::size_t place = 0; place < size; ++place) {
            for (int byte = 0; byte < 256; ++byte) {
                for (const char other : {'Q', '~', ' '}) {
                    std::string text(size, other);
                    text[place] = static_cast<char>(byte);

                    ASSERT_EQ(folded(text), expected(text)) << byte << " at " << place;
                }
            }
        }
    }
}

TEST(FoldedText, IsFoldedAsTheWindowShowsIt)
{
    EXPECT_EQ(folded("Ann\nLee"), "Before <Ann Lee>");
    EXPECT_EQ(folded("A quite long name\xFF"), "Before <A quite long name\uFFFD>");
}

}  // namespace

}  // namespace dunmora::test
