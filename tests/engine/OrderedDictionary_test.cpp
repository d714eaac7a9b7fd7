#include "engine/OrderedDictionary.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>
#include <vector>

namespace dunmora::test {
namespace {

std::vector<std::string> keysOf(const OrderedDictionary<int>& dictionary)
{
    std::vector<std::string> keys;
    for (const auto& entry : dictionary) {
        keys.push_back(entry.key);
    }
    return keys;
}

using Keys = std::vector<std::string>;

TEST(OrderedDictionary, IteratesInTheOrderOfFirstStoring)
{
    OrderedDictionary<int> dictionary;
    dictionary["zoe"] = 1;
    dictionary["ann"] = 2;
    dictionary["moe"] = 3;
    dictionary["zoe"] = 4;

    EXPECT_EQ(keysOf(dictionary), (Keys{"zoe", "ann", "moe"}));
    EXPECT_EQ(*dictionary.find("zoe"), 4);
    EXPECT_EQ(dictionary.size(), 3U);
}

TEST(OrderedDictionary, FindsNothingUnderAnUnknownKey)
{
    OrderedDictionary<int> dictionary;
    EXPECT_EQ(dictionary.find("ann"), nullptr);
    EXPECT_FALSE(dictionary.erase("ann"));

    dictionary["ann"] = 1;

    EXPECT_EQ(dictionary.find("ben"), nullptr);
    EXPECT_FALSE(dictionary.erase("ben"));
}

TEST(OrderedDictionary, KeepsTheOthersInOrderWhenOneIsErased)
{
    OrderedDictionary<int> dictionary;
    for (const auto* key : {"a", "b", "c", "d"}) {
        dictionary[key] = 1;
    }

    EXPECT_TRUE(dictionary.erase("a"));
    EXPECT_TRUE(dictionary.erase("c"));

    EXPECT_EQ(keysOf(dictionary), (Keys{"b", "d"}));
    EXPECT_EQ(dictionary.find("c"), nullptr);
    EXPECT_EQ(dictionary.size(), 2U);
}

TEST(OrderedDictionary, PutsAKeyThatIsStoredAgainAtTheEnd)
{
    OrderedDictionary<int> dictionary;
    dictionary["a"] = 1;
    dictionary["b"] = 2;
    dictionary.erase("a");

    dictionary["a"] = 3;

    EXPECT_EQ(keysOf(dictionary), (Keys{"b", "a"}));
    EXPECT_EQ(*dictionary.find("a"), 3);
}

TEST(OrderedDictionary, IsEmptyAfterClear)
{
    OrderedDictionary<int> dictionary;
    dictionary["a"] = 1;

    dictionary.clear();

    EXPECT_TRUE(dictionary.empty());
    EXPECT_EQ(dictionary.find("a"), nullptr);
    EXPECT_EQ(keysOf(dictionary), Keys{});
}

TEST(OrderedDictionary, FindsAValueAtItsPositionUntilItIsErased)
{
    OrderedDictionary<int> dictionary;
    dictionary["a"] = 1;
    dictionary["b"] = 2;
    const auto position = dictionary.positionOf("b");

    dictionary.erase("a");
    EXPECT_EQ(*dictionary.at(position), 2);

    dictionary.erase("b");
    EXPECT_EQ(dictionary.at(position), nullptr);
    EXPECT_EQ(dictionary.positionOf("b"), OrderedDictionary<int>::kNowhere);
}

TEST(OrderedDictionary, CountsWhenPositionsChange)
{
    OrderedDictionary<int> dictionary;
    dictionary.reserve(3);
    const auto before = dictionary.positionsChanged();
    dictionary["a"] = 1;
    dictionary["b"] = 2;
    dictionary.erase("a");
    EXPECT_EQ(dictionary.positionsChanged(), before);

    // More than there is space for.
    dictionary.reserve(1'000);
    const auto afterMore = dictionary.positionsChanged();
    EXPECT_GT(afterMore, before);

    dictionary.clear();
    EXPECT_GT(dictionary.positionsChanged(), afterMore);
}

TEST(OrderedDictionary, AgreesWithAStandardMapThroughAnyMixOfSteps)
{
    std::mt19937 random(7);
    OrderedDictionary<int> dictionary;
    std::map<std::string, int, std::less<>> model;
    for (int step = 0; step < 20000; ++step) {
        const auto key = std::to_string(random() % 300);
        if (random() % 3 == 0) {
            EXPECT_EQ(dictionary.erase(key), model.erase(key) == 1);
        } else {
            dictionary[key] = step;
            model[key] = step;
        }
        if (random() % 2000 == 0) {
            dictionary.reserve(random() % 1000);
        }
        ASSERT_EQ(dictionary.size(), model.size());
    }

    for (int i = 0; i < 300; ++i) {
        const auto key = std::to_string(i);
        const auto* value = dictionary.find(key);
        const auto expected = model.find(key);
        ASSERT_EQ(value != nullptr, expected != model.end()) << key;
        if (value != nullptr) {
            EXPECT_EQ(*value, expected->second) << key;
        }
    }
    EXPECT_EQ(keysOf(dictionary).size(), model.size());
}

}  // namespace
}  // namespace dunmora::test
