#include "adapters/vcard/LineEnd.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <string_view>

namespace dunmora::test {

namespace {

using Find = LineEnd (*)(std::string_view text, std::size_t from);

/// Every way to find a line end that this processor knows.
#ifdef __SSE2__
constexpr std::array<Find, 3> kWays{findLineEnd, findLineEndByWords, findLineEndBySse2};
#else
constexpr std::array<Find, 2> kWays{findLineEnd, findLineEndByWords};
#endif

/// The same byte by byte.
LineEnd expectedEnd(std::string_view text, std::size_t from)
{
    const auto line = text.substr(from, text.substr(from).find_first_of("\r\n"));
    return {from + line.size(), std::all_of(line.begin(), line.end(), [](char c) {
                return static_cast<unsigned char>(c) < 0x80 && c != '\\';
            })};
}

/// A copy of the text that begins `offset` bytes after an address that is a multiple of 16, and
/// that ends where the memory ends, so that a sanitizer sees every byte read beyond it.
class PlacedText final {
public:
    PlacedText(std::string_view text, std::size_t offset)
        : memory_(std::make_unique<char[]>(offset + text.size())),  // NOLINT(*-c-arrays)
          text_(memory_.get() + offset, text.size())
    {
        std::memcpy(memory_.get() + offset, text.data(), text.size());
    }

    std::string_view text() const { return text_; }

private:
    std::unique_ptr<char[]> memory_;  // NOLINT(*-c-arrays)
    std::string_view text_;
};

void expectFound(std::string_view text, std::size_t from)
{
    const auto expected = expectedEnd(text, from);
    for (const auto find : kWays) {
        const auto end = find(text, from);
        ASSERT_EQ(end.offset, expected.offset) << testing::PrintToString(text) << " from " << from;
        ASSERT_EQ(end.isPlain, expected.isPlain)
            << testing::PrintToString(text) << " from " << from;
    }
}

constexpr std::size_t kLongest = 40;

}  // namespace

TEST(LineEnd, IsFoundAtEveryPositionOfATextOfEveryLength)
{
    for (std::size_t offset = 0; offset < 16; ++offset) {
        for (std::size_t size = 0; size <= kLongest; ++size) {
            for (std::size_t position = 0; position <= size; ++position) {
                std::string text(size, 'a');
                if (position < size) {
                    text[position] = position % 2 == 0 ? '\n' : '\r';
                }
                const PlacedText placed(text, offset);

                expectFound(placed.text(), 0);
                expectFound(placed.text(), position);
                ASSERT_EQ(findLineEnd(placed.text(), 0).offset, position);
            }
        }
    }
}

TEST(LineEnd, TellsPlainLinesFromOthersByEveryByteBeforeIt)
{
    for (const char unusual : {'\\', '\x80', '\xFF', '\xC3'}) {
        for (std::size_t end = 0; end <= kLongest; ++end) {
            for (std::size_t position = 0; position <= kLongest; ++position) {
                std::string text(kLongest + 1, 'a');
                text[end] = '\n';
                if (position != end) {
                    text[position] = unusual;
                }

                expectFound(text, 0);
                ASSERT_EQ(findLineEnd(text, 0).isPlain, position >= end);
            }
        }
    }
}

TEST(LineEnd, IsNotMistakenForABytesNeighbours)
{
    // Each of these differs by one bit or by one from a byte that is looked for.
    for (int code = 0; code < 256; ++code) {
        for (std::size_t position = 0; position < kLongest; ++position) {
            std::string text(kLongest, 'a');
            text[position] = static_cast<char>(code);
            text[(position + 1) % kLongest] = static_cast<char>(code ^ 1);

            expectFound(text, 0);
        }
    }
}

TEST(LineEnd, IsTheSameByWordsAndByteByByteInRandomTexts)
{
    constexpr std::string_view kBytes = "\n\r\\\x80\x8A\x8D\xDC\x0B\x09\x0C[]";
    std::mt19937 random(7);
    for (int round = 0; round < 20'000; ++round) {
        std::string text(random() % 80, 'a');
        for (auto unusual = random() % 5; unusual > 0 && !text.empty(); --unusual) {
            text[random() % text.size()] = kBytes[random() % kBytes.size()];
        }

        expectFound(text, text.empty() ? 0 : random() % text.size());
        ASSERT_FALSE(HasFatalFailure()) << "round " << round;
    }
}

}  // namespace dunmora::test
