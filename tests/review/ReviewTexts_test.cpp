#include "review/ReviewTexts.h"

#include "review/DeletionDoubts.h"
#include "review/GroupWarnings.h"

#include <gtest/gtest.h>

namespace dunmora::test {
namespace {

std::string bracketed(std::size_t number)
{
    return '[' + std::to_string(number) + ']';
}

TEST(ReviewTexts, WriteNumbersInDigitsAloneUnlessTheProgramDoesOtherwise)
{
    EXPECT_EQ(warningText(GroupWarning::LosesEveryCopy, 12'345),
              "12345 people would lose every copy");
    EXPECT_EQ(markedText(12'345, 0), "Checked 12345 people.");
}

TEST(ReviewTexts, WriteNumbersAsTheProgramDoes)
{
    EXPECT_EQ(warningText(GroupWarning::LosesEveryCopy, 2, bracketed),
              "[2] people would lose every copy");
    EXPECT_EQ(warningText(GroupWarning::SharesOnlyEmptyFields, 2, bracketed),
              "[2] people share only empty fields");
    EXPECT_EQ(uniqueText(2, bracketed), "[2] copies hold something unique");
    EXPECT_EQ(keptMarksText(2, 3, bracketed),
              "[2] check marks kept, [3] not: their groups have changed.");
    EXPECT_EQ(lostMarksQuestion(2, bracketed).informativeText,
              "You have changed [2] check marks in this one. The changes will be lost.");
    EXPECT_EQ(markedText(2, 3, bracketed), "Checked [2] people and unchecked [3].");
    EXPECT_EQ(markedText(0, 3, bracketed), "Unchecked [3] people.");
}

TEST(ReviewTexts, WriteTheNumbersOfADoubtAsTheProgramDoes)
{
    const auto question = doubtQuestion({7, {"Ann", "Ben"}, 3}, bracketed);

    EXPECT_EQ(question.messageText, "[7] people would be deleted completely");
    EXPECT_TRUE(question.informativeText.starts_with("Ann, Ben and [5] more.\n\n[3] people match"))
        << question.informativeText;
}

}  // namespace
}  // namespace dunmora::test
