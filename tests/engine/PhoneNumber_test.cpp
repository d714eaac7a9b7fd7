#include "engine/PhoneNumber.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora::test {
namespace {

std::string_view pick(std::initializer_list<LabelledPhone> phones, std::string_view word)
{
    return PhoneNumber(PhoneList(phones.begin(), phones.size()), word);
}

TEST(PhoneNumber, PicksTheFirstEntryWhoseLabelContainsTheWord)
{
    EXPECT_EQ(pick({{"_$!<Work>!$_", "1"}, {"_$!<Home>!$_", "2"}, {"_$!<Home>!$_", "3"}}, "home"),
              "2");
}

TEST(PhoneNumber, TakesAHomeFaxListedBeforeTheHomeNumber)
{
    EXPECT_EQ(pick({{"Home FAX", "555-1"}, {"Home", "555-2"}}, "home"), "555-1");
}

TEST(PhoneNumber, IsEmptyWhenNoLabelContainsTheWord)
{
    EXPECT_EQ(pick({{"Work", "1"}, {"Mobile", "2"}}, "home"), "");
}

TEST(PhoneNumber, IsEmptyForEveryWordWhenTheListIsMissing)
{
    for (const auto* word : {"home", "work", "mobile"}) {
        EXPECT_EQ(PhoneNumber(std::nullopt, word), "");
        EXPECT_EQ(pick({}, word), "");
    }
}

TEST(PhoneNumber, TakesAnEntryWithoutALabelForEveryWord)
{
    for (const auto* word : {"home", "work", "mobile"}) {
        EXPECT_EQ(pick({{std::nullopt, "555-9"}, {"home work mobile", "1"}}, word), "555-9");
    }
}

TEST(PhoneNumber, PrefersAnEarlierLabelToALaterMissingOne)
{
    EXPECT_EQ(pick({{"home", "1"}, {std::nullopt, "2"}}, "home"), "1");
    EXPECT_EQ(pick({{"home", "1"}, {std::nullopt, "2"}}, "work"), "2");
}

TEST(PhoneNumber, DistinguishesAnEmptyLabelFromAMissingOne)
{
    EXPECT_EQ(pick({{"", "1"}}, "home"), "");
}

TEST(PhoneNumber, MatchesOneEntryForTwoWords)
{
    EXPECT_EQ(pick({{"work mobile", "1"}}, "work"), "1");
    EXPECT_EQ(pick({{"work mobile", "1"}}, "mobile"), "1");
}

TEST(PhoneNumber, MatchesLabelsOfAnyCase)
{
    EXPECT_EQ(pick({{"HOME", "1"}}, "home"), "1");
    EXPECT_EQ(pick({{"wOrK", "1"}}, "work"), "1");
}

TEST(PhoneNumber, LowersTheKelvinSignToTheKOfWork)
{
    EXPECT_EQ(pick({{"wor\u212A", "1"}}, "work"), "1");
    EXPECT_EQ(pick({{"WOR\u212A!", "1"}}, "work"), "1");
}

TEST(PhoneNumber, LeavesOtherLettersOfOtherScriptsAlone)
{
    EXPECT_EQ(pick({{"h\u00D6me", "1"}, {"h\u039Fme", "2"}}, "home"), "");
}

TEST(PhoneNumber, FindsAWordAfterAFalseStart)
{
    EXPECT_EQ(pick({{"hohome", "1"}}, "home"), "1");
    EXPECT_EQ(pick({{"hom", "1"}}, "home"), "");
}

TEST(PhoneNumber, FindsAWordAnywhereInALabel)
{
    struct Spelling {
        std::string_view word;
        std::string inLabel;
    };
    const Spelling spellings[] = {{"home", "home"},     {"home", "HOME"},
                                  {"work", "Work"},     {"work", "wor\u212A"},
                                  {"mobile", "mobile"}, {"mobile", "mObIlE"}};
    const std::string others = "_$!<hwmHWMoOho>_$!<hwmHWMoOho>";
    for (const auto& [word, inLabel] : spellings) {
        for (std::size_t before = 0; before <= others.size(); ++before) {
            for (std::size_t after = 0; after <= others.size(); ++after) {
                auto label = others.substr(0, before) + inLabel;
                const auto cutOff = label.substr(0, label.size() - 1);
                label += others.substr(0, after);

                EXPECT_EQ(pick({{label, "1"}}, word), "1") << label;
                EXPECT_EQ(pick({{cutOff, "1"}}, word), "") << cutOff;
            }
        }
    }
}

TEST(PhoneNumber, DistinguishesEveryOtherCharacterFromALetter)
{
    const std::string word = "home";
    for (std::size_t place = 0; place < word.size(); ++place) {
        for (int code = 0; code < 256; ++code) {
            const auto character = static_cast<char>(code);
            auto label = "_$!<" + word + ">!$_";
            label[4 + place] = character;
            const bool isLetter =
                character == word[place] || character == static_cast<char>(word[place] - 'a' + 'A');

            EXPECT_EQ(pick({{label, "1"}}, word), isLetter ? "1" : "") << label;
        }
    }
}

TEST(PhoneNumber, ReturnsTheValueAsStored)
{
    EXPECT_EQ(pick({{"Home", " +1 (555) 010-0123;ext=7 "}}, "home"), " +1 (555) 010-0123;ext=7 ");
    EXPECT_EQ(pick({{"Home", ""}, {"Home", "2"}}, "home"), "");
}

}  // namespace
}  // namespace dunmora::test
