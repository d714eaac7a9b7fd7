#include "engine/OrderedDictionary.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <map>
#include <new>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace dunmora::test {
namespace {

template <typename Value>
std::vector<std::string> keysOf(const OrderedDictionary<Value>& dictionary)
{
    std::vector<std::string> keys;
    for (const auto& entry : dictionary) {
        keys.emplace_back(entry.key);
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

TEST(OrderedDictionary, KeepsEveryPositionUntilItIsCleared)
{
    OrderedDictionary<int> dictionary;
    dictionary["a"] = 1;
    dictionary["b"] = 2;
    dictionary["c"] = 3;
    dictionary.erase("b");

    for (int i = 0; i < 1'000; ++i) {
        dictionary[std::to_string(i)] = i;
    }
    dictionary["b"] = 4;

    EXPECT_EQ(*dictionary.at(0), 1);
    EXPECT_EQ(dictionary.at(1), nullptr);
    EXPECT_EQ(*dictionary.at(2), 3);
    EXPECT_EQ(dictionary.positionOf("b"), 1'003U);
    EXPECT_EQ(dictionary.positions(), 1'004U);
    EXPECT_EQ(dictionary.size(), 1'003U);
}

TEST(OrderedDictionary, ReturnsThePositionOfEachEntry)
{
    OrderedDictionary<int> dictionary;
    dictionary["a"] = 1;
    dictionary["b"] = 2;
    dictionary["c"] = 3;
    dictionary.erase("a");
    std::vector<std::size_t> positions;

    for (auto entry = dictionary.begin(); entry != dictionary.end(); ++entry) {
        positions.push_back(entry.position());
    }

    EXPECT_EQ(positions, (std::vector<std::size_t>{1, 2}));
}

TEST(OrderedDictionary, ErasesWhatIsAtAPosition)
{
    OrderedDictionary<int> dictionary;
    dictionary["a"] = 1;
    dictionary["b"] = 2;

    dictionary.eraseAt(0);

    EXPECT_EQ(keysOf(dictionary), Keys{"b"});
    EXPECT_EQ(dictionary.find("a"), nullptr);
    EXPECT_EQ(dictionary.size(), 1U);
}

TEST(OrderedDictionary, CopiesTheKeysThatItIsGiven)
{
    OrderedDictionary<int> dictionary;
    std::string key = "a";
    dictionary[key] = 1;

    key = "b";

    EXPECT_EQ(keysOf(dictionary), Keys{"a"});
}

TEST(OrderedDictionary, StoresAKeyThatIsInItsTextsAndReplacesTheValue)
{
    OrderedDictionary<std::pair<int, std::string_view>> dictionary;
    const auto hash = TextIndex::hashOf("a");
    const auto store = [&](int number) {
        dictionary.store(
            "a", hash, [&] { return std::pair(number, dictionary.texts().store("a")); },
            [](const auto& value) { return value.second; });
    };

    store(1);
    const auto key = dictionary.find("a")->second;
    dictionary["b"].first = 2;
    store(3);

    EXPECT_EQ(keysOf(dictionary), (Keys{"a", "b"}));
    EXPECT_EQ(dictionary.begin()->key.data(), key.data());
    EXPECT_EQ(dictionary.find("a")->first, 3);
    EXPECT_EQ(dictionary.positionOf("a", hash), 0U);
    EXPECT_EQ(dictionary.valueUnder("a", hash).first, 3);
}

TEST(OrderedDictionary, StaysUnchangedWhenAValueCannotBeMade)
{
    OrderedDictionary<int> dictionary;
    const auto fail = []() -> int { throw std::bad_alloc(); };
    const auto keyOf = [](int /*value*/) { return std::string_view("a"); };

    EXPECT_THROW(dictionary.store("a", TextIndex::hashOf("a"), fail, keyOf), std::bad_alloc);

    EXPECT_TRUE(dictionary.empty());
    EXPECT_EQ(dictionary.find("a"), nullptr);
}

TEST(OrderedDictionary, KeepsItsContentsReadableForThoseWhoHaveThem)
{
    OrderedDictionary<int> dictionary;
    dictionary["a"] = 1;
    dictionary["b"] = 2;
    const auto contents = dictionary.contents();
    dictionary.erase("a");
    EXPECT_TRUE(dictionary.has(contents));

    dictionary.clear();
    dictionary["c"] = 3;

    EXPECT_EQ(contents.key(0), "a");
    EXPECT_EQ(contents.value(0), 1);
    EXPECT_EQ(contents.key(1), "b");
    EXPECT_EQ(contents.value(1), 2);
    EXPECT_FALSE(dictionary.has(contents));
}

TEST(OrderedDictionary, IsEmptyAfterItsContentHasMoved)
{
    OrderedDictionary<int> dictionary;
    dictionary["a"] = 1;
    OrderedDictionary<int> other;
    other["b"] = 2;

    other = std::move(dictionary);

    EXPECT_EQ(keysOf(other), Keys{"a"});
    EXPECT_EQ(*other.find("a"), 1);
    // NOLINTNEXTLINE(bugprone-use-after-move): the class says what is left
    EXPECT_TRUE(dictionary.empty());
    dictionary["c"] = 3;
    EXPECT_EQ(keysOf(dictionary), Keys{"c"});
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
