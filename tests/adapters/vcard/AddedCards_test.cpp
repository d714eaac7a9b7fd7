#include "adapters/vcard/AddedCards.h"

#include "adapters/vcard/CardFile.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora::test {
namespace {

std::string cardWith(std::string_view lines)
{
    return "BEGIN:VCARD\r\nVERSION:3.0\r\n" + std::string(lines) + "END:VCARD\r\n";
}

/// The card with line feeds alone.
std::string withLineFeeds(std::string card)
{
    std::erase(card, '\r');
    return card;
}

/// The cards of a file, compared with those of others.
class Added {
public:
    explicit Added(const std::string& content)
        : content_(content), file_(cardFileOf("backup", content_)), cards_(file_)
    {
    }

    void compareWith(const std::string& content)
    {
        cards_.compareWith(cardFileOf("book", content));
    }

    const AddedCards& cards() const { return cards_; }

    std::vector<bool> present() const
    {
        std::vector<bool> result;
        for (const auto& card : cards_.all()) {
            result.push_back(cards_.isPresent(card));
        }
        return result;
    }

    std::vector<bool> withTakenUids() const
    {
        std::vector<bool> result;
        for (const auto& card : cards_.all()) {
            result.push_back(cards_.isUidTaken(card));
        }
        return result;
    }

private:
    std::string content_;
    CardFile file_;
    AddedCards cards_;
};

using Flags = std::vector<bool>;

TEST(AddedCards, AreTheCardsWithTheirLineEndsUidsAndNames)
{
    const auto ann = cardWith("N:Lee;Ann;;;\r\nUID:a\r\n");
    const auto number = withLineFeeds(cardWith("TEL:12\r\n"));
    const Added added(ann + "; between\r\n" + number);

    const auto& all = added.cards().all();
    ASSERT_EQ(all.size(), 2U);
    EXPECT_EQ(std::string(all[0].bytes) + "\r\n", ann);
    EXPECT_EQ(all[0].lineEnd, "\r\n");
    EXPECT_EQ(all[0].uid(), "a");
    EXPECT_EQ(all[0].name(), "Ann Lee");
    EXPECT_EQ(std::string(all[1].bytes) + "\n", number);
    EXPECT_EQ(all[1].lineEnd, "\n");
    EXPECT_EQ(all[1].uid(), "");
    EXPECT_EQ(all[1].name(), "12");
}

TEST(AddedCards, ArePresentWithTheSameTextWhateverTheLineEnds)
{
    const auto ann = cardWith("N:Lee;Ann;;;\r\n");
    const auto ben = cardWith("N:Lee;Ben;;;\r\n");
    const auto cid = cardWith("N:Lee;Cid;;;\r\n");
    Added added(ann + withLineFeeds(ben) + cid + ben);

    added.compareWith(withLineFeeds(ann) + ben);

    EXPECT_EQ(added.present(), (Flags{true, true, false, true}));
    EXPECT_EQ(added.withTakenUids(), Flags(4));
}

TEST(AddedCards, DifferByCarriageReturnsThatEndNoLine)
{
    Added added(cardWith("NOTE:a\rb\r\n") + cardWith("NOTE:c\r\r\n"));

    added.compareWith(cardWith("NOTE:ab\r\n") + cardWith("NOTE:c\r\n"));
    EXPECT_EQ(added.present(), Flags(2));

    added.compareWith(withLineFeeds(cardWith("")).insert(24, "NOTE:a\rb\n"));
    EXPECT_EQ(added.present(), (Flags{true, false}));
}

TEST(AddedCards, HaveATakenUidWhenAnyCardOfTheBookHasIt)
{
    Added added(cardWith("FN:Ann\r\nUID:a\r\n") + cardWith("FN:Ben\r\nUID:b\r\n") +
                cardWith("FN:Ann B.\r\nUID:a\r\n") + cardWith("FN:Cid\r\n"));

    added.compareWith(cardWith("FN:Another\r\nUID:a\r\n") + cardWith("FN:Nobody\r\n"));

    EXPECT_EQ(added.present(), Flags(4));
    EXPECT_EQ(added.withTakenUids(), (Flags{true, false, true, false}));
}

TEST(AddedCards, ArePresentInAnyOfTheFilesThatAreCompared)
{
    const auto ann = cardWith("FN:Ann\r\nUID:a\r\n");
    const auto ben = cardWith("FN:Ben\r\nUID:b\r\n");
    Added added(ann + ben);

    added.compareWith(ann);
    added.compareWith(ben);

    EXPECT_EQ(added.present(), (Flags{true, true}));
    EXPECT_EQ(added.withTakenUids(), (Flags{true, true}));
}

TEST(AddedCards, NameTheFirstOfTheCardsWithTheSameText)
{
    const auto ann = cardWith("FN:Ann\r\n");
    const auto ben = cardWith("FN:Ben\r\n");
    const Added added(ben + ann + withLineFeeds(ann) + ben + ann);

    std::vector<std::size_t> first;
    for (const auto& card : added.cards().all()) {
        first.push_back(card.firstWithText);
    }
    EXPECT_EQ(first, (std::vector<std::size_t>{0, 1, 1, 0, 1}));
}

}  // namespace
}  // namespace dunmora::test
