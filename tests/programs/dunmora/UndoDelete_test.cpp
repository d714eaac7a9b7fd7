#include "programs/dunmora/UndoDelete.h"

#include "tests/programs/dunmora/MainWindowTest.h"

#include "ui/AppData.h"

#include <fstream>
#include <iterator>

namespace dunmora::test {
namespace {

using Lines = std::vector<std::string>;

class UndoDeleteTest : public MainWindowTest {
protected:
    void deleteChecked()
    {
        main_->command("OnDelete").use();
        application_.runUntilIdle();
    }

    void undo()
    {
        main_->command("OnUndoDelete").use();
        application_.runUntilIdle();
    }

    /// The line that reports a deletion; empty while it is hidden.
    std::string report()
    {
        return main_->view("vwDeletion").isHidden ? ""
                                                  : main_->textField("txtDeletion").stringValue;
    }

    bool offersToUndo()
    {
        EXPECT_EQ(main_->command("OnUndoDelete").isEnabled,
                  main_->command("OnSaveRemoved").isEnabled);
        return main_->command("OnUndoDelete").isEnabled;
    }

    static std::string contentOf(const std::filesystem::path& file)
    {
        std::ifstream in(file);
        return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    }
};

TEST_F(UndoDeleteTest, IsNotOfferedBeforeADeletion)
{
    start(file_);

    EXPECT_FALSE(offersToUndo());
    EXPECT_EQ(report(), "");
}

TEST_F(UndoDeleteTest, IsOfferedBesideTheNumberOfPeopleDeleted)
{
    start(file_);

    deleteChecked();

    EXPECT_EQ(report(), "1 person deleted.");
    EXPECT_TRUE(offersToUndo());
    EXPECT_FALSE(main_->button("btnUndoDelete").isHidden);
    EXPECT_FALSE(main_->button("btnSaveRemoved").isHidden);
    EXPECT_EQ(main_->textField("txtTotal").stringValue, "1 duplicates of 2");
}

TEST_F(UndoDeleteTest, PutsThePeopleBackAndReloads)
{
    start(file_);
    const auto before = book_.storedUids();
    deleteChecked();
    ASSERT_NE(book_.storedUids(), before);

    undo();

    EXPECT_EQ(book_.storedUids(), before);
    EXPECT_EQ(application_.threads,
              (Lines{"LoadContacts", "FindDuplicates", "DeleteCheckedContacts", "UndoDelete",
                     "LoadContacts", "FindDuplicates"}));
    EXPECT_EQ(table().rows, 2U);
    EXPECT_TRUE(table().isEnabled);
    EXPECT_EQ(main_->textField("txtTotal").stringValue, "2 duplicates of 3");
    EXPECT_EQ(report(), "1 person restored.");
    EXPECT_TRUE(main_->button("btnUndoDelete").isHidden);
    EXPECT_FALSE(offersToUndo());
    EXPECT_EQ(alerts(), Lines{"Confirm to delete"});
    EXPECT_FALSE(supervised_.isBusy());
}

TEST_F(UndoDeleteTest, RestoresTheMarksFromBeforeTheDeletion)
{
    start(file_);
    table().selected = 1;
    main_->command("OnKeepOnly").use();
    deleteChecked();
    ASSERT_EQ(table().rows, 1U);

    undo();

    ASSERT_EQ(table().rows, 2U);
    EXPECT_EQ(table().dataSource->objectValue("check", 0), CellValue(true));
    EXPECT_EQ(table().dataSource->objectValue("check", 1), CellValue(false));
    EXPECT_EQ(main_->textField("txtResult").stringValue, "2 check marks kept.");
}

TEST_F(UndoDeleteTest, DisablesTheTableAndTheCommandsMeanwhile)
{
    start(file_);
    deleteChecked();

    main_->command("OnUndoDelete").use();

    EXPECT_FALSE(table().isEnabled);
    for (const auto* const name : {"OnUndoDelete", "OnDelete", "OnReload", "OnOpen"}) {
        EXPECT_FALSE(main_->command(name).isEnabled) << name;
    }
    EXPECT_EQ(report(), "");
    EXPECT_NE(AppData::app().progress(), nullptr);
    application_.runUntilIdle();
    EXPECT_EQ(AppData::app().progress(), nullptr);
}

TEST_F(UndoDeleteTest, WorksAfterAReload)
{
    start(file_);
    deleteChecked();
    main_->command("OnReload").use();
    application_.runUntilIdle();
    EXPECT_EQ(report(), "");
    EXPECT_TRUE(offersToUndo());

    undo();

    EXPECT_EQ(book_.storedUids(), (Lines{"ann-1", "ben", "ann-2"}));
}

TEST_F(UndoDeleteTest, LeavesTheProgramUsableWhenTheDialogIsCancelled)
{
    start(file_);
    deleteChecked();
    dialogAnswer_ = "OnCancel";

    undo();

    EXPECT_EQ(emptiness(), "The search was cancelled");
    EXPECT_TRUE(table().isEnabled);
    EXPECT_EQ(report(), "1 person restored.");
    EXPECT_TRUE(main_->command("OnReload").isEnabled);
}

TEST_F(UndoDeleteTest, StartsWithTheLastDeletion)
{
    book_ =
        FakeAddressBook({person("ann-1", "Ann"), person("ann-2", "Ann"), person("ann-3", "Ann")});
    start(file_);
    deleteChecked();
    ASSERT_EQ(book_.storedUids(), Lines{"ann-1"});
    book_.addBehindTheBack(person("ann-4", "Ann"));
    main_->command("OnReload").use();
    application_.runUntilIdle();
    deleteChecked();
    ASSERT_EQ(book_.storedUids(), Lines{"ann-1"});

    undo();
    EXPECT_EQ(book_.storedUids(), (Lines{"ann-1", "ann-4"}));
    EXPECT_TRUE(offersToUndo());

    undo();
    EXPECT_EQ(book_.storedUids().size(), 4U);
    EXPECT_FALSE(offersToUndo());
}

TEST_F(UndoDeleteTest, ForgetsTheDeletionsOfAnotherBook)
{
    start(file_);
    deleteChecked();
    FakeAddressBook other({person("zoe-1", "Zoe"), person("zoe-2", "Zoe")});
    bookToOpen_ = &other;

    window_->open(folder_.path());
    application_.runUntilIdle();

    EXPECT_FALSE(offersToUndo());
    EXPECT_EQ(report(), "");
}

TEST_F(UndoDeleteTest, ReportsAFailureAndCanBeTriedAgain)
{
    start(file_);
    deleteChecked();
    book_.onRestore = [] { throw PlatformError("“address-book.vcf” is read-only."); };

    undo();

    EXPECT_EQ(alerts(), (Lines{"Confirm to delete", "“address-book.vcf” is read-only."}));
    EXPECT_TRUE(table().isEnabled);
    EXPECT_EQ(main_->textField("txtTotal").stringValue, "0 duplicates of 2");
    EXPECT_EQ(report(), "");
    ASSERT_TRUE(offersToUndo());

    book_.onRestore = [] {};
    undo();
    EXPECT_EQ(book_.storedUids(), (Lines{"ann-1", "ben", "ann-2"}));
}

TEST_F(UndoDeleteTest, NamesThePeopleWhoCouldNotBePutBack)
{
    start(file_);
    deleteChecked();
    auto impostor = person("ann-2", "Somebody else");
    book_.addBehindTheBack(impostor);
    bool wasProgressOpen = true;
    platform_.alert.onRunModal = [&](const AlertContent& /*content*/) {
        wasProgressOpen = AppData::app().progress() != nullptr;
        return Alert::kDefaultButton;
    };

    undo();

    ASSERT_EQ(platform_.alert.shown.size(), 2U);
    EXPECT_FALSE(wasProgressOpen);
    const auto& alert = platform_.alert.shown.back();
    EXPECT_EQ(alert.messageText, "Not everyone could be restored");
    EXPECT_EQ(alert.style, AlertStyle::Failure);
    EXPECT_TRUE(alert.informativeText.ends_with(
        "Choose Edit > Save Removed People… to save their cards in a file."));
    EXPECT_TRUE(offersToUndo());
}

TEST_F(UndoDeleteTest, KeepsTheCurrentMarksWhenTheSameDeletionIsUndoneAgain)
{
    book_ =
        FakeAddressBook({person("ann-1", "Ann"), person("ann-2", "Ann"), person("ben-1", "Ben"),
                         person("ben-2", "Ben"), person("zoe-1", "Zoe"), person("zoe-2", "Zoe")});
    start(file_);
    const auto keepAllOf = [this](std::size_t row) {
        table().selected = row;
        main_->command("OnKeepAll").use();
    };
    const auto isZoeChecked = [this] {
        return table().dataSource->objectValue(
                   "check", static_cast<std::ptrdiff_t>(table().rows - 1)) == CellValue(true);
    };
    keepAllOf(2);
    keepAllOf(4);
    deleteChecked();
    table().selected = 1;
    main_->command("OnKeepOnly").use();
    deleteChecked();
    ASSERT_EQ(book_.storedUids(), (Lines{"ann-1", "ben-1", "zoe-1", "zoe-2"}));
    book_.addBehindTheBack(person("ben-2", "Somebody else"));
    undo();
    ASSERT_FALSE(isZoeChecked());
    main_->command("OnRestoreProposal").use();
    ASSERT_TRUE(isZoeChecked());

    undo();

    EXPECT_TRUE(isZoeChecked()) << "not as before the first deletion, which is not undone yet";
}

TEST_F(UndoDeleteTest, SavesTheCardsOfTheRemovedPeople)
{
    start(file_);
    deleteChecked();
    const auto file = folder_.path() / "removed.vcf";
    desktop_.savePanel.choice = file;

    main_->command("OnSaveRemoved").use();

    EXPECT_EQ(desktop_.savePanel.names, Lines{"Removed People.vcf"});
    EXPECT_EQ(desktop_.savePanel.folders, std::vector{folder_.path()});
    EXPECT_EQ(contentOf(file), book_.lastRemovedCards());
    EXPECT_FALSE(contentOf(file).empty());
    EXPECT_TRUE(offersToUndo());

    main_->command("OnSaveRemoved").use();
    ASSERT_EQ(failures().size(), 1U);
    EXPECT_NE(failures().back().find("removed.vcf"), std::string::npos);
}

TEST_F(UndoDeleteTest, SavesNoFileThatWouldBecomePartOfTheBook)
{
    start(folder_.path());
    deleteChecked();
    desktop_.savePanel.choice = folder_.path() / "removed.vcf";

    main_->command("OnSaveRemoved").use();

    EXPECT_FALSE(std::filesystem::exists(folder_.path() / "removed.vcf"));
    EXPECT_EQ(failures(), Lines{"“" + (folder_.path() / "removed.vcf").string() +
                                "” would become part of the address book. Choose another folder."});
    EXPECT_TRUE(offersToUndo());
}

TEST_F(UndoDeleteTest, SavesNothingWhenThePanelIsCancelled)
{
    start(file_);
    deleteChecked();

    main_->command("OnSaveRemoved").use();

    EXPECT_EQ(alerts(), Lines{"Confirm to delete"});
}

TEST_F(UndoDeleteTest, DoesNotReportADeletionThatFailed)
{
    start(file_);
    book_.onSave = [] { throw PlatformError("“address-book.vcf” is read-only."); };

    deleteChecked();

    EXPECT_EQ(report(), "");
    EXPECT_FALSE(offersToUndo());
}

TEST_F(UndoDeleteTest, ReportsWhomADeletionRemovedBeforeItFailed)
{
    book_ =
        FakeAddressBook({person("ann-1", "Ann"), person("ann-2", "Ann"), person("ann-3", "Ann")});
    start(file_);
    book_.removalsBeforeFailure = 1;

    deleteChecked();

    EXPECT_EQ(alerts(), (Lines{"Confirm to delete", "Not everybody was deleted."}));
    EXPECT_EQ(book_.storedUids(), (Lines{"ann-1", "ann-3"}));
    EXPECT_EQ(report(), "1 person deleted.");
    EXPECT_FALSE(main_->button("btnUndoDelete").isHidden);
    ASSERT_TRUE(offersToUndo());

    undo();
    EXPECT_EQ(book_.storedUids(), (Lines{"ann-1", "ann-2", "ann-3"}));
    EXPECT_EQ(report(), "1 person restored.");
}

TEST_F(UndoDeleteTest, ReportsNoEarlierDeletionAfterOneThatRemovedNobody)
{
    book_ =
        FakeAddressBook({person("ann-1", "Ann"), person("ann-2", "Ann"), person("ann-3", "Ann")});
    start(file_);
    deleteChecked();
    book_.addBehindTheBack(person("ann-4", "Ann"));
    main_->command("OnReload").use();
    application_.runUntilIdle();
    book_.removalsBeforeFailure = 0;

    deleteChecked();

    EXPECT_EQ(book_.storedUids(), (Lines{"ann-1", "ann-4"}));
    EXPECT_EQ(report(), "");
    EXPECT_TRUE(offersToUndo());
}

}  // namespace
}  // namespace dunmora::test
