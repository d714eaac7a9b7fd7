#include "programs/dunmora-cli/TextPieces.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

namespace {

constexpr std::size_t kLong = 64UL * 1024;

TEST(TextPieces, PrintsALongTextBeforeItIsComplete)
{
    std::vector<std::string> printed;
    TextPieces pieces([&](std::string_view piece) { printed.emplace_back(piece); });

    pieces.text().append(kLong - 1, 'a');
    pieces.printLong();
    const auto before = printed;
    pieces.text() += 'b';
    pieces.printLong();

    EXPECT_TRUE(before.empty());
    ASSERT_EQ(printed.size(), 1U);
    EXPECT_EQ(printed[0], std::string(kLong - 1, 'a') + 'b');
    EXPECT_EQ(pieces.text(), "");
}

TEST(TextPieces, PrintsEveryPieceOnce)
{
    std::string printed;
    std::string expected;
    TextPieces pieces([&](std::string_view piece) { printed += piece; });

    for (std::size_t i = 0; i < 100'000; ++i) {
        const auto line = std::to_string(i) + '\n';
        expected += line;
        pieces.text() += line;
        pieces.printLong();
    }
    pieces.printRest();

    EXPECT_EQ(printed, expected);
}

TEST(TextPieces, PrintsAnEmptyRest)
{
    std::size_t prints = 0;
    TextPieces pieces([&](std::string_view piece) {
        EXPECT_EQ(piece, "");
        ++prints;
    });

    pieces.printRest();

    EXPECT_EQ(prints, 1U);
}

TEST(TextPieces, PassesTheErrorsOfPrintingOn)
{
    TextPieces pieces([](std::string_view /*piece*/) { throw std::runtime_error("full"); });

    pieces.text() = "text";

    EXPECT_THROW(pieces.printRest(), std::runtime_error);
}

}  // namespace

}  // namespace dunmora
