#include "ui/ContactsController.h"

#include "app/DunmoraAppDelegate.h"
#include "base/NotificationCenter.h"
#include "engine/ContactsParser.h"
#include "platform/PlatformError.h"
#include "tests/fakes/DesktopTest.h"
#include "tests/fakes/NotificationRecorder.h"
#include "tests/fakes/People.h"
#include "ui/AppData.h"
#include "ui/ProgressWindowController.h"

#include <latch>
#include <limits>
#include <utility>

namespace dunmora::test {
namespace {

using Names = std::vector<std::string>;

class ContactsControllerTest : public DesktopTest {
protected:
    /// Ann twice and Ben once: two rows, of which the second is checked.
    void SetUp() override
    {
        found({person("ann-1", "Ann"), person("ben", "Ben"), person("ann-2", "Ann")});
        controller_.awakeFromNib();
    }

    /// The engine has found the duplicates of these people; the window does not know it yet.
    void found(std::vector<FakePerson> people)
    {
        platform_.addressBook = FakeAddressBook(std::move(people));
        engine_.load();
        engine_.findDupes();
        log_.clear();
    }

    void postReload() { NotificationCenter::defaultCenter().postNotification(kMsgReload, this); }

    bool isChecked(const std::string& uid) const
    {
        return engine_.contacts().find(uid)->isChecked();
    }
    void check(const std::string& uid, bool checked = true)
    {
        engine_.contacts().find(uid)->setObject(checked, kContactCheck);
    }
    void uncheckEveryone()
    {
        for (auto& contact : engine_.contacts()) {
            contact.value.setObject(false, kContactCheck);
        }
    }

    /// The user answers the confirmation with "Cancel".
    void refuseConfirmation()
    {
        platform_.alert.onRunModal = [](const AlertContent& /*content*/) {
            return Alert::kAlternateButton;
        };
    }

    ContactsParser& engine_ = ContactsParser::parser();
    DunmoraAppDelegate delegate_;
    FakeInterface mainInterface_{"MainWindow", log_};
    FakeTableView& table_ = mainInterface_.tableView("tableContacts");
    FakeTextField& total_ = mainInterface_.textField("txtTotal");
    ContactsController controller_{mainInterface_, [this] { delegate_.LoadContacts(); }};
};

// Rows and cells.

TEST_F(ContactsControllerTest, IsTheTablesDataSource)
{
    EXPECT_EQ(table_.dataSource, &controller_);
}

TEST_F(ContactsControllerTest, HasARowForEveryDuplicateInOrder)
{
    EXPECT_EQ(controller_.numberOfRows(), 2U);
    EXPECT_EQ(controller_.objectValue("uid", 0), CellValue("ann-1"));
    EXPECT_EQ(controller_.objectValue("uid", 1), CellValue("ann-2"));
}

TEST_F(ContactsControllerTest, ShowsEveryValueOfTheRecordUnchanged)
{
    EXPECT_EQ(controller_.objectValue("fname", 0), CellValue("Ann"));
    EXPECT_EQ(controller_.objectValue("lname", 0), CellValue("Lee"));
    EXPECT_EQ(controller_.objectValue("nickname", 0), CellValue("Annie"));
    EXPECT_EQ(controller_.objectValue("home", 0), CellValue("555-0100"));
    EXPECT_EQ(controller_.objectValue("work", 0), CellValue("555-0101"));
    EXPECT_EQ(controller_.objectValue("mobile", 0), CellValue("555-0102"));
    EXPECT_EQ(controller_.objectValue("modified", 0), CellValue(*FakePerson().modified));
    EXPECT_EQ(controller_.objectValue("check", 1), CellValue(true));
}

TEST_F(ContactsControllerTest, AsksTheEngineForEveryCell)
{
    check("ann-2", false);

    EXPECT_EQ(controller_.objectValue("check", 1), CellValue(false));
}

TEST_F(ContactsControllerTest, LeavesACellEmptyOutsideTheRows)
{
    EXPECT_EQ(controller_.objectValue("fname", 2), std::nullopt);
    EXPECT_EQ(controller_.objectValue("fname", std::numeric_limits<std::ptrdiff_t>::max()),
              std::nullopt);
    EXPECT_EQ(controller_.objectValue("fname", -1), std::nullopt);
    EXPECT_EQ(controller_.objectValue("fname", std::numeric_limits<std::ptrdiff_t>::min()),
              std::nullopt);
}

TEST_F(ContactsControllerTest, LeavesACellEmptyForAnUnknownColumnOrAMissingValue)
{
    EXPECT_EQ(controller_.objectValue("email", 0), std::nullopt);
    EXPECT_EQ(controller_.objectValue("", 0), std::nullopt);
    // The copy that is kept has never been checked.
    EXPECT_EQ(controller_.objectValue("check", 0), std::nullopt);
}

TEST_F(ContactsControllerTest, LeavesACellEmptyWhenTheRowsRecordIsGone)
{
    engine_.contacts().erase("ann-1");

    EXPECT_EQ(controller_.numberOfRows(), 2U);
    EXPECT_EQ(controller_.objectValue("fname", 0), std::nullopt);
}

// Check marks.

TEST_F(ContactsControllerTest, RestoresTheMarkOfARowThatIsClickedTwice)
{
    controller_.setObjectValue(false, "check", 1);
    EXPECT_FALSE(isChecked("ann-2"));

    controller_.setObjectValue(true, "check", 1);
    EXPECT_TRUE(isChecked("ann-2"));
}

TEST_F(ContactsControllerTest, ChecksARowThatHasNoMarkYetOnTheFirstClick)
{
    controller_.setObjectValue(true, "check", 0);

    EXPECT_EQ(controller_.objectValue("check", 0), CellValue(true));
}

TEST_F(ContactsControllerTest, TogglesTheRecordWhateverTheTablePasses)
{
    controller_.setObjectValue(true, "check", 1);
    EXPECT_FALSE(isChecked("ann-2"));

    controller_.setObjectValue("a text", "check", 1);
    EXPECT_TRUE(isChecked("ann-2"));
}

TEST_F(ContactsControllerTest, DoesNotReloadTheTableForAClick)
{
    controller_.setObjectValue(false, "check", 1);

    EXPECT_EQ(calls(), Calls());
}

TEST_F(ContactsControllerTest, IgnoresEditsOfOtherColumns)
{
    controller_.setObjectValue("Bob", "fname", 0);
    controller_.setObjectValue(true, "Check", 0);

    EXPECT_EQ(controller_.objectValue("fname", 0), CellValue("Ann"));
    EXPECT_EQ(controller_.objectValue("check", 0), std::nullopt);
}

TEST_F(ContactsControllerTest, WritesNothingForARowWithoutARecord)
{
    engine_.contacts().erase("ann-1");

    controller_.setObjectValue(true, "check", 0);
    controller_.setObjectValue(true, "check", 2);
    controller_.setObjectValue(true, "check", -1);

    EXPECT_EQ(engine_.contacts().size(), 2U);
    EXPECT_FALSE(isChecked("ben"));
    EXPECT_TRUE(isChecked("ann-2"));
}

TEST_F(ContactsControllerTest, DoesNothingWithTheSelection)
{
    table_.selected = 1;

    controller_.tableViewSelectionDidChange();

    EXPECT_EQ(calls(), Calls());
    EXPECT_TRUE(isChecked("ann-2"));
    EXPECT_FALSE(isChecked("ann-1"));
}

// Reloading the table.

TEST_F(ContactsControllerTest, EnablesAndReloadsTheTableBeforeItShowsTheTotal)
{
    postReload();

    EXPECT_EQ(calls(), (Calls{"MainWindow.tableContacts setEnabled true",
                              "MainWindow.tableContacts reloadData",
                              "MainWindow.txtTotal setStringValue 2 duplicates of 3"}));
    EXPECT_EQ(table_.rows, 2U);
}

TEST_F(ContactsControllerTest, HasNoRowsAndATotalOfZeroWhenThereAreNoDuplicates)
{
    found({person("ann-1", "Ann"), person("ben", "Ben")});

    postReload();

    EXPECT_EQ(table_.rows, 0U);
    EXPECT_EQ(total_.stringValue, "0 duplicates of 2");
}

TEST_F(ContactsControllerTest, SaysDuplicatesForEveryCount)
{
    engine_.deleteContacts({"ann-2"});

    postReload();

    EXPECT_EQ(total_.stringValue, "1 duplicates of 2");
}

TEST_F(ContactsControllerTest, ReloadsOnTheMainThreadWhileThePostingThreadWaits)
{
    log_.prefix = [this] { return application_.isMainThread() ? "main " : "worker "; };
    std::size_t callsWhenThePostReturned = 0;

    application_.detachNewThread("Job", [&] {
        postReload();
        callsWhenThePostReturned = calls().size();
    });
    application_.runUntilIdle();

    EXPECT_EQ(callsWhenThePostReturned, 3U);
    for (const auto& call : calls()) {
        EXPECT_TRUE(call.starts_with("main ")) << call;
    }
}

TEST_F(ContactsControllerTest, IgnoresNotificationsBeforeItAwakes)
{
    FakeInterface otherInterface("OtherWindow", log_);
    const ContactsController asleep(otherInterface, [this] { delegate_.LoadContacts(); });

    postReload();

    for (const auto& call : calls()) {
        EXPECT_FALSE(call.starts_with("OtherWindow")) << call;
    }
}

TEST_F(ContactsControllerTest, LeavesNotificationsAndTheTableWhenItIsDestroyed)
{
    FakeInterface otherInterface("OtherWindow", log_);
    {
        ContactsController shortLived(otherInterface, [this] { delegate_.LoadContacts(); });
        shortLived.awakeFromNib();
    }

    postReload();

    EXPECT_EQ(calls().size(), 3U);
    EXPECT_EQ(otherInterface.tableView("tableContacts").dataSource, nullptr);
}

// Reload.

TEST_F(ContactsControllerTest, ReloadEmptiesTheTableShowsProgressAndThenLoads)
{
    postReload();
    log_.clear();
    Calls whenTheThreadStarts;
    application_.onDetach = [&](std::string_view /*name*/) { whenTheThreadStarts = calls(); };

    controller_.OnReload(nullptr);

    EXPECT_EQ(whenTheThreadStarts,
              (Calls{"MainWindow.tableContacts reloadData", "load ProgressWindow",
                     "ProgressWindow setLevel floating", "ProgressWindow show"}));
    EXPECT_EQ(table_.rows, 0U);
    application_.runUntilIdle();
    EXPECT_EQ(application_.threads, Names{"LoadContacts"});
}

TEST_F(ContactsControllerTest, ReloadLeavesTheTotalAndTheTableEnabled)
{
    postReload();

    controller_.OnReload(nullptr);

    EXPECT_EQ(total_.stringValue, "2 duplicates of 3");
    EXPECT_TRUE(table_.isEnabled);
    application_.runUntilIdle();

    table_.isEnabled = false;
    controller_.OnReload(nullptr);

    EXPECT_FALSE(table_.isEnabled);
}

TEST_F(ContactsControllerTest, KeepsThePeopleUntilTheNewOnesAreRead)
{
    std::size_t people = 0;
    application_.onDetach = [&](std::string_view /*name*/) { people = engine_.contacts().size(); };

    controller_.OnReload(nullptr);

    EXPECT_EQ(people, 3U);
    application_.runUntilIdle();
}

TEST_F(ContactsControllerTest, LoadsEvenWhileAJobRuns)
{
    std::latch mayContinue(1);
    application_.detachNewThread("Job", [&] { mayContinue.wait(); });

    controller_.OnReload(nullptr);

    EXPECT_EQ(application_.threads, (Names{"Job", "LoadContacts"}));
    mayContinue.count_down();
    application_.runUntilIdle();
}

TEST_F(ContactsControllerTest, ReloadsWithoutAProgressWindow)
{
    loader_.missing.insert("ProgressWindow");

    controller_.OnReload(nullptr);
    application_.runUntilIdle();

    EXPECT_EQ(AppData::app().progress(), nullptr);
    EXPECT_EQ(application_.threads, Names{"LoadContacts"});
}

// Delete.

TEST_F(ContactsControllerTest, ShowsAMessageAndStartsNothingWhenNobodyIsChecked)
{
    uncheckEveryone();

    controller_.OnDelete(nullptr);

    ASSERT_EQ(platform_.alert.shown.size(), 1U);
    EXPECT_EQ(platform_.alert.shown[0].messageText, "No contact checked to be deleted!");
    EXPECT_EQ(platform_.alert.shown[0].informativeText, "");
    EXPECT_EQ(platform_.alert.shown[0].defaultButton, "OK");
    EXPECT_EQ(platform_.alert.shown[0].alternateButton, std::nullopt);
    EXPECT_EQ(application_.threads, Names());
    EXPECT_EQ(calls(), Calls());
    EXPECT_TRUE(table_.isEnabled);
}

TEST_F(ContactsControllerTest, AsksForConfirmationBeforeAnythingChanges)
{
    Calls whenAsked{"not asked"};
    platform_.alert.onRunModal = [&](const AlertContent& /*content*/) {
        whenAsked = calls();
        return Alert::kAlternateButton;
    };

    controller_.OnDelete(nullptr);

    EXPECT_EQ(whenAsked, Calls());
    ASSERT_EQ(platform_.alert.shown.size(), 1U);
    EXPECT_EQ(platform_.alert.shown[0].messageText, "Confirm to delete");
    EXPECT_EQ(platform_.alert.shown[0].informativeText,
              "The checked contacts will be deleted from Address Book. \r\n"
              "Do you really want to continue?");
    EXPECT_EQ(platform_.alert.shown[0].defaultButton, "Okay");
    EXPECT_EQ(platform_.alert.shown[0].alternateButton, "Cancel");
}

TEST_F(ContactsControllerTest, LeavesEverythingAsItWasWhenTheConfirmationIsCancelled)
{
    check("ben");
    refuseConfirmation();

    controller_.OnDelete(nullptr);

    EXPECT_EQ(calls(), Calls());
    EXPECT_EQ(application_.threads, Names());
    EXPECT_EQ(AppData::app().progress(), nullptr);
    EXPECT_TRUE(table_.isEnabled);
    EXPECT_FALSE(isChecked("ann-1"));
    EXPECT_TRUE(isChecked("ben"));
    EXPECT_TRUE(isChecked("ann-2"));
    EXPECT_EQ(platform_.addressBook.storedUids(), (Names{"ann-1", "ben", "ann-2"}));
}

class AnswerTest : public ContactsControllerTest, public testing::WithParamInterface<int> {};

TEST_P(AnswerTest, OtherThanCancelDeletes)
{
    platform_.alert.onRunModal = [](const AlertContent& /*content*/) { return GetParam(); };

    controller_.OnDelete(nullptr);
    application_.runUntilIdle();

    EXPECT_EQ(platform_.addressBook.storedUids(), (Names{"ann-1", "ben"}));
}

INSTANTIATE_TEST_SUITE_P(AnyNumberButZero, AnswerTest, testing::Values(1, -1, 2));

TEST_F(ContactsControllerTest, DisablesTheTableShowsProgressAndThenDeletes)
{
    Calls whenTheThreadStarts;
    application_.onDetach = [&](std::string_view /*name*/) { whenTheThreadStarts = calls(); };

    controller_.OnDelete(nullptr);
    application_.runUntilIdle();

    EXPECT_EQ(whenTheThreadStarts,
              (Calls{"MainWindow.tableContacts setEnabled false", "load ProgressWindow",
                     "ProgressWindow setLevel floating", "ProgressWindow show"}));
    EXPECT_EQ(application_.threads, Names{"DeleteCheckedContacts"});
    EXPECT_EQ(platform_.addressBook.storedUids(), (Names{"ann-1", "ben"}));
    EXPECT_EQ(platform_.addressBook.writes(), 1U);
}

TEST_F(ContactsControllerTest, KeepsTheTableDisabledFromTheConfirmationUntilTheNextReload)
{
    delegate_.applicationDidFinishLaunching();
    bool isEnabledWhileDeleting = true;
    platform_.addressBook.onSave = [&] { isEnabledWhileDeleting = table_.isEnabled; };

    controller_.OnDelete(nullptr);
    EXPECT_FALSE(table_.isEnabled);
    application_.runUntilIdle();

    EXPECT_FALSE(isEnabledWhileDeleting);
    EXPECT_TRUE(table_.isEnabled);
    EXPECT_EQ(table_.rows, 1U);
    EXPECT_EQ(total_.stringValue, "1 duplicates of 2");
}

TEST_F(ContactsControllerTest, DeletesACheckedPersonWithoutARow)
{
    check("ben");

    controller_.OnDelete(nullptr);
    application_.runUntilIdle();

    EXPECT_EQ(platform_.addressBook.storedUids(), Names{"ann-1"});
}

TEST_F(ContactsControllerTest, DeletesNobodyWhoIsNotChecked)
{
    uncheckEveryone();
    check("ann-1");

    controller_.OnDelete(nullptr);
    application_.runUntilIdle();

    EXPECT_EQ(platform_.addressBook.storedUids(), (Names{"ben", "ann-2"}));
}

TEST_F(ContactsControllerTest, DeletesThoseWhoWereCheckedWhenTheCommandWasGiven)
{
    platform_.addressBook.onRead = [this] { check("ben"); };

    controller_.OnDelete(nullptr);
    application_.runUntilIdle();

    EXPECT_EQ(platform_.addressBook.storedUids(), (Names{"ann-1", "ben"}));
}

TEST_F(ContactsControllerTest, DeletesWithoutAProgressWindow)
{
    loader_.missing.insert("ProgressWindow");

    controller_.OnDelete(nullptr);
    application_.runUntilIdle();

    EXPECT_EQ(AppData::app().progress(), nullptr);
    EXPECT_EQ(platform_.addressBook.storedUids(), (Names{"ann-1", "ben"}));
}

TEST_F(ContactsControllerTest, ShowsNoAlertWhenTheBookCannotBeSaved)
{
    delegate_.applicationDidFinishLaunching();
    platform_.addressBook.onSave = [] { throw PlatformError("The disk is full."); };
    const NotificationRecorder recorder;

    controller_.OnDelete(nullptr);
    application_.runUntilIdle();

    ASSERT_EQ(application_.failures.size(), 1U);
    EXPECT_THROW(std::rethrow_exception(application_.failures[0]), PlatformError);
    // The confirmation, and nothing after it.
    EXPECT_EQ(platform_.alert.shown.size(), 1U);
    EXPECT_EQ(recorder.count("msgReload"), 0U);
    EXPECT_FALSE(table_.isEnabled);
    EXPECT_NE(AppData::app().progress(), nullptr);
}

TEST_F(ContactsControllerTest, ShowsANewProgressWindowAndReleasesTheOldOneWithoutClosingIt)
{
    controller_.showProgress();
    const std::weak_ptr<ProgressWindowController> before = AppData::app().progress();
    log_.clear();

    controller_.showProgress();

    EXPECT_TRUE(before.expired());
    EXPECT_EQ(calls(), (Calls{"load ProgressWindow", "ProgressWindow setLevel floating",
                              "ProgressWindow show"}));
    ASSERT_NE(AppData::app().progress(), nullptr);
    EXPECT_EQ(AppData::app().progress().use_count(), 1);
}

}  // namespace
}  // namespace dunmora::test
