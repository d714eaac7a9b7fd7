#include "adapters/vcard/CardFile.h"

#include "tests/adapters/vcard/BookTest.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

namespace dunmora::test {
namespace {

CardFile fileOf(std::string_view content)
{
    auto memory = FileBytes::allocate(content.size());
    std::copy(content.begin(), content.end(), memory.get());
    return {"book.vcf", FileBytes(std::move(memory), content.size())};
}

/// Whether a file with this content is blank as a whole.
bool isBlankFile(std::string_view content)
{
    const auto file = fileOf(content);
    return file.areBlank(file.without({}));
}

std::string joined(const Pieces& pieces)
{
    std::string text;
    for (const auto piece : pieces) {
        text += piece;
    }
    return text;
}

TEST(CardFile, CutsRangesOut)
{
    const auto file = fileOf("0123456789");

    EXPECT_EQ(joined(file.without({})), "0123456789");
    EXPECT_EQ(joined(file.without({{0, 2}, {2, 3}, {5, 6}})), "346789");
    EXPECT_EQ(joined(file.without({{8, 10}})), "01234567");
    EXPECT_EQ(joined(file.without({{0, 10}})), "");
}

TEST(CardFile, DecodesUtf16)
{
    const auto file = fileOf("\xFF\xFE" + utf16Little("BEGIN"));

    EXPECT_EQ(file.encoding(), FileEncoding::Utf16LittleEndian);
    EXPECT_EQ(file.text(), "\xEF\xBB\xBF"
                           "BEGIN");
    EXPECT_EQ(file.bytes().size(), 12U);
}

TEST(CardFile, IsBlankWithWhiteSpaceAndByteOrderMarksOnly)
{
    EXPECT_TRUE(isBlankFile(""));
    EXPECT_TRUE(isBlankFile("\xEF\xBB\xBF \t\r\n\v\f\xEF\xBB\xBF"));
    EXPECT_TRUE(isBlankFile("\xFF\xFE" + utf16Little(" \r\n")));

    EXPECT_FALSE(isBlankFile("-"));
    EXPECT_FALSE(isBlankFile(std::string(1, '\0')));
    EXPECT_FALSE(isBlankFile("\xFF\xFE" + utf16Little(" ") + "\r"));
}

}  // namespace
}  // namespace dunmora::test
