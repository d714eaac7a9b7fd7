#include "text/TextIndex.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <new>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace dunmora::test {
namespace {

/// Texts that share a slot in a table of this size under the standard library's hash, which anybody
/// can compute.
std::vector<std::string> collidingTexts(std::size_t count, std::size_t slots)
{
    std::vector<std::string> texts;
    for (std::size_t i = 0; texts.size() < count; ++i) {
        auto text = std::to_string(i);
        if (std::hash<std::string_view>()(text) % slots == 0) {
            texts.push_back(std::move(text));
        }
    }
    return texts;
}

/// Adds the texts to the index in order.
void addAll(TextIndex& index, const std::vector<std::string>& texts)
{
    for (std::size_t i = 0; i < texts.size(); ++i) {
        index.add(texts[i], i);
    }
}

TEST(TextIndex, FindsTextsByTheirPositions)
{
    const std::vector<std::string> texts = {"Ann", "Ben", "Cid"};
    TextIndex index;
    index.reset(texts.size());
    const auto find = [&](std::string_view text) {
        return index.find(text, [&](std::size_t position) { return texts[position] == text; });
    };

    addAll(index, texts);

    EXPECT_EQ(find("Ann"), 0U);
    EXPECT_EQ(find("Cid"), 2U);
    EXPECT_EQ(find("Dan"), TextIndex::kNowhere);
}

TEST(TextIndex, FindsNothingBeforeItHasSpace)
{
    const TextIndex index;

    EXPECT_EQ(index.find("Ann", [](std::size_t) { return true; }), TextIndex::kNowhere);
    EXPECT_FALSE(index.fits(1));
}

TEST(TextIndex, KeepsTheFirstPositionOfAText)
{
    TextIndex index;
    index.reset(7);
    const auto always = [](std::size_t) { return true; };
    std::size_t next = 5;
    const auto append = [&] { return next++; };

    EXPECT_EQ(index.findOrAdd("Ann", always, append), std::pair(std::size_t{5}, true));
    EXPECT_EQ(index.findOrAdd("Ann", always, append), std::pair(std::size_t{5}, false));
    EXPECT_EQ(next, 6U);
}

TEST(TextIndex, ExchangesThePositionOfAText)
{
    TextIndex index;
    index.reset(9);
    const auto always = [](std::size_t) { return true; };
    const auto hash = TextIndex::hashOf("Ann");

    EXPECT_EQ(index.exchange(hash, 3, always), TextIndex::kNowhere);
    EXPECT_EQ(index.exchange(hash, 8, always), 3U);
    EXPECT_EQ(index.find(hash, always), 8U);

    EXPECT_EQ(index.exchange(hash, 5, [](std::size_t) { return false; }), TextIndex::kNowhere);
    EXPECT_EQ(index.find(hash, [](std::size_t position) { return position == 5; }), 5U);
    EXPECT_EQ(index.find(hash, always), 8U);
}

TEST(TextIndex, FindsATextByItsHash)
{
    TextIndex index;
    index.reset(9);
    const auto always = [](std::size_t) { return true; };
    const auto hash = TextIndex::hashOf("Ann");

    index.add(hash, 7);

    EXPECT_EQ(index.find(hash, always), 7U);
    EXPECT_EQ(index.find("Ann", always), 7U);
    EXPECT_EQ(index.find(TextIndex::hashOf("Ben"), always), TextIndex::kNowhere);
    EXPECT_EQ(index.findOrAdd(hash, always, [] { return std::size_t{8}; }),
              std::pair(std::size_t{7}, false));
    EXPECT_EQ(index.findOrAdd(TextIndex::hashOf("Ben"), always, [] { return std::size_t{8}; }),
              std::pair(std::size_t{8}, true));
    EXPECT_EQ(index.find("Ben", always), 8U);
}

TEST(TextIndex, CanPrefetchAtAnyTime)
{
    TextIndex index;
    const auto hash = TextIndex::hashOf("Ann");

    index.prefetch(hash);
    index.reset(2);
    index.prefetch(hash);

    EXPECT_EQ(index.find(hash, [](std::size_t) { return true; }), TextIndex::kNowhere);
}

TEST(TextIndex, StaysUnchangedWhenATextCannotBeAppended)
{
    TextIndex index;
    index.reset(2);
    const auto always = [](std::size_t) { return true; };
    const auto fail = []() -> std::size_t { throw std::bad_alloc(); };

    EXPECT_THROW(index.findOrAdd("Ann", always, fail), std::bad_alloc);

    EXPECT_EQ(index.find("Ann", always), TextIndex::kNowhere);
}

TEST(TextIndex, HasEverySlotInOnePart)
{
    TextIndex index;
    index.reset(100);
    for (const std::size_t count : {1, 2, 3, 7, 500}) {
        for (std::uint64_t hash = 0; hash < 300; ++hash) {
            std::size_t parts = 0;
            for (std::size_t i = 0; i < count; ++i) {
                parts += index.beginsIn(index.part(i, count), hash) ? 1 : 0;
            }
            EXPECT_EQ(parts, 1U);
        }
    }
}

TEST(TextIndex, FindsWhatWasAddedInAPart)
{
    TextIndex index;
    index.reset(8);
    const auto part = index.part(0, 2);
    const auto is = [](std::size_t wanted) {
        return [=](std::size_t position) { return position == wanted; };
    };
    using Addition = TextIndex::Addition;

    // They share the slot before the last one of the part.
    EXPECT_EQ(index.addIn(part, 6, 1, is(1)), Addition::Done);
    EXPECT_EQ(index.addIn(part, 6, 1, is(1)), Addition::Known);
    EXPECT_EQ(index.addIn(part, 6, 2, is(2)), Addition::Done);
    EXPECT_EQ(index.addIn(part, 6, 2, is(2)), Addition::Known);
    EXPECT_EQ(index.addIn(part, 6, 3, is(3)), Addition::LeavesPart);

    EXPECT_EQ(index.find(6, is(1)), 1U);
    EXPECT_EQ(index.find(6, is(2)), 2U);
    EXPECT_EQ(index.find(6, is(3)), TextIndex::kNowhere);
    index.add(6, 3);
    EXPECT_EQ(index.find(6, is(3)), 3U);
}

TEST(TextIndex, HasNothingAfterReset)
{
    TextIndex index;
    index.reset(2);
    const auto always = [](std::size_t) { return true; };
    index.add("Ann", 0);

    index.reset(2);

    EXPECT_EQ(index.find("Ann", always), TextIndex::kNowhere);
}

TEST(TextIndex, SearchesBrieflyAmongTextsCraftedToShareASlot)
{
    constexpr std::size_t kTexts = 1000;
    const auto texts = collidingTexts(kTexts, 2048);
    TextIndex index;
    index.reset(kTexts);

    addAll(index, texts);

    // Linear probing with half of the slots free: about 20. Crafted texts would make it 1,001.
    EXPECT_LT(index.longestSearch(), 200U);
    EXPECT_GT(index.longestSearch(), 1U);
}

TEST(TextIndex, RarelyReadsATextThatDoesNotMatch)
{
    constexpr std::size_t kTexts = 1000;
    const auto texts = collidingTexts(kTexts, 2048);
    TextIndex index;
    index.reset(kTexts);
    addAll(index, texts);

    std::size_t reads = 0;
    for (const auto& text : texts) {
        index.find(text, [&](std::size_t position) {
            ++reads;
            return texts[position] == text;
        });
    }

    // One for each text; another one in a million searches.
    EXPECT_LE(reads, kTexts + 1);
}

}  // namespace
}  // namespace dunmora::test
