#include "ui/GroupedNumber.h"

#include "tests/fakes/DesktopTest.h"
#include "ui/CheckedCount.h"
#include "ui/DeletionResult.h"
#include "ui/ReadingNotesButton.h"
#include "ui/ReviewRows.h"

#include <gtest/gtest.h>

namespace dunmora::test {
namespace {

class GroupedNumberTest : public DesktopTest {
protected:
    FakeInterface interface_{"MainWindow", log_};
};

TEST_F(GroupedNumberTest, WritesNumbersAsTheDesktopDoes)
{
    EXPECT_EQ(groupedNumber(999), "999");
    EXPECT_EQ(groupedNumber(1'234'567), "1'234'567");
}

TEST_F(GroupedNumberTest, IsInTheSentencesOfTheMainWindow)
{
    CheckedCount(interface_).show(12'345);
    EXPECT_EQ(interface_.textField("txtChecked").stringValue, "12'345 checked");
    EXPECT_EQ(interface_.command("OnDelete").title, "Delete 12'345 Checked…");

    DeletionResult result(interface_);
    result.showDeleted(12'345, false);
    EXPECT_EQ(interface_.textField("txtDeletion").stringValue, "12'345 people deleted.");
    result.showRestored(1'000);
    EXPECT_EQ(interface_.textField("txtDeletion").stringValue, "1'000 people restored.");

    ReadingNotes notes;
    notes.cardsSkipped = 1'234;
    ReadingNotesButton(interface_).setNotes(notes);
    EXPECT_EQ(interface_.button("btnNotes").title, "1'234 cards were skipped");
}

TEST_F(GroupedNumberTest, IsInTheSentencesAboutRows)
{
    EXPECT_EQ(countText(1'234, 12'345), "1'234 of 12'345 match");
    EXPECT_EQ(copyText(1'999, {1'000, 2'000}), "copy 1'000 of 2'000");
}

}  // namespace
}  // namespace dunmora::test
