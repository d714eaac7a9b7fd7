#include "app/DunmoraAppDelegate.h"
#include "base/NotificationCenter.h"
#include "base/Settings.h"
#include "tests/fakes/DesktopTest.h"
#include "tests/fakes/People.h"
#include "ui/AppData.h"
#include "ui/ContactsController.h"

#include <algorithm>
#include <initializer_list>

namespace dunmora::test {
namespace {

using Uids = std::vector<std::string>;

/// The whole program without its adapters. One log records every step with its thread.
class PipelineTest : public DesktopTest {
protected:
    void SetUp() override
    {
        platform_.addressBook =
            FakeAddressBook({person("ann-1", "Ann"), person("ben", "Ben"), person("ann-2", "Ann")});
        platform_.addressBook.onRead = [this] { log_.add("book is read"); };
        platform_.addressBook.onRemove = [this] { log_.add("book removes"); };
        platform_.addressBook.onSave = [this] { log_.add("book is saved"); };
        platform_.alert.onRunModal = [this](const AlertContent& content) {
            log_.add("alert " + content.messageText);
            return Alert::kDefaultButton;
        };
        application_.onDetach = [this](std::string_view name) {
            log_.add("detach " + std::string(name));
        };
        application_.onRunModal = [this](Window& /*window*/) {
            log_.add("dialog runs");
            loader_.last->command(dialogAnswer_).use();
        };
        log_.prefix = [this] { return application_.isMainThread() ? "main: " : "worker: "; };

        for (const auto name : {kMsgShowMessage, kMsgFinished, kMsgReload}) {
            NotificationCenter::defaultCenter().addObserver(
                this, name, [this](const Notification& notification) {
                    log_.add(std::string(notification.name) + " " +
                             std::string(notification.text()));
                });
        }
        delegate_.applicationDidFinishLaunching();
        controller_.awakeFromNib();
        // The update check at launch is not part of the pipeline.
        log_.clear();
    }

    void TearDown() override
    {
        DesktopTest::TearDown();
        for (const auto name : {kMsgShowMessage, kMsgFinished, kMsgReload}) {
            NotificationCenter::defaultCenter().removeObserver(this, name);
        }
    }

    /// Runs until every thread has ended; returns the steps since the last call.
    Calls story()
    {
        application_.runUntilIdle();
        auto steps = calls();
        log_.clear();
        return steps;
    }

    void activate()
    {
        delegate_.applicationDidBecomeActive();
        application_.runUntilIdle();
    }

    std::size_t count(const std::string& call) const
    {
        const auto made = calls();
        return static_cast<std::size_t>(std::count(made.begin(), made.end(), call));
    }

    std::string dialogAnswer_ = "OnOkay";
    DunmoraAppDelegate delegate_;
    FakeInterface mainInterface_{"MainWindow", log_};
    FakeTableView& table_ = mainInterface_.tableView("tableContacts");
    FakeTextField& total_ = mainInterface_.textField("txtTotal");
    ContactsController controller_{mainInterface_, [this] { delegate_.LoadContacts(); }};
};

using Story = std::vector<std::string>;

Story join(std::initializer_list<Story> parts)
{
    Story story;
    for (const auto& part : parts) {
        story.insert(story.end(), part.begin(), part.end());
    }
    return story;
}

Story progressOpens()
{
    return {"main: load ProgressWindow", "main: ProgressWindow setLevel floating",
            "main: ProgressWindow show"};
}

Story message(const std::string& text)
{
    return {"worker: msgShowMessage " + text,
            "worker: ProgressWindow.txtInfo setStringValue " + text,
            "worker: ProgressWindow.txtInfo setNeedsDisplay"};
}

Story step(int current, int total)
{
    const std::string bar = "worker: ProgressWindow.progress ";
    return {bar + "setMinValue 0.000000", bar + "setMaxValue " + std::to_string(total) + ".000000",
            bar + "setDoubleValue " + std::to_string(current) + ".000000", bar + "setNeedsDisplay"};
}

Story pass(int total)
{
    Story story;
    for (int i = 0; i < total; ++i) {
        story = join({story, step(i, total)});
    }
    return story;
}

Story loading(int people)
{
    return join({message("Loading Contacts..."),
                 {"worker: book is read"},
                 pass(people),
                 {"worker: msgFinished loading", "main: ProgressWindow close"}});
}

Story dialogRuns()
{
    return {"main: load FilterWindow",
            "main: FilterWindow.btnFilterNickname setState 0",
            "main: FilterWindow.btnFilterFirstname setState 1",
            "main: FilterWindow.btnFilterLastname setState 1",
            "main: FilterWindow.btnFilterHome setState 0",
            "main: FilterWindow.btnFilterWork setState 0",
            "main: FilterWindow.btnFilterMobile setState 0",
            "main: dialog runs",
            "main: FilterWindow close"};
}

Story tableReloads(const std::string& total)
{
    return {"main: msgReload ", "main: MainWindow.tableContacts setEnabled true",
            "main: MainWindow.tableContacts reloadData",
            "main: MainWindow.txtTotal setStringValue " + total};
}

TEST_F(PipelineTest, RunsEveryStepInOrderOnItsThread)
{
    // The first activation loads, shows the dialog and searches.
    delegate_.applicationDidBecomeActive();

    EXPECT_EQ(story(), join({progressOpens(),
                             {"main: detach LoadContacts"},
                             loading(3),
                             dialogRuns(),
                             progressOpens(),
                             {"main: detach FindDuplicates"},
                             message("Sorting contacts..."),
                             pass(3),
                             message("Finding duplicated contacts..."),
                             pass(2),
                             {"worker: msgFinished finding", "main: ProgressWindow close"},
                             tableReloads("2 duplicates of 3")}));
    EXPECT_EQ(table_.rows, 2U);
    EXPECT_EQ(AppData::app().progress(), nullptr);

    // A click changes the record through the table.
    controller_.setObjectValue(true, "check", 0);

    EXPECT_EQ(story(), Story());
    EXPECT_EQ(controller_.objectValue("check", 0), CellValue(true));
    EXPECT_EQ(controller_.objectValue("check", 1), CellValue(true));

    // Both copies are deleted.
    controller_.OnDelete(nullptr);

    EXPECT_EQ(story(), join({{"main: alert Confirm to delete"},
                             {"main: MainWindow.tableContacts setEnabled false"},
                             progressOpens(),
                             {"main: detach DeleteCheckedContacts"},
                             message("Deleting checked contacts..."),
                             {"worker: book is read"},
                             step(0, 2),
                             {"worker: book removes"},
                             step(2, 2),
                             {"worker: book removes", "worker: book is saved"},
                             {"worker: msgFinished deleting", "main: ProgressWindow close"},
                             tableReloads("0 duplicates of 1")}));
    EXPECT_EQ(platform_.addressBook.storedUids(), Uids{"ben"});
    EXPECT_EQ(AppData::app().progress(), nullptr);

    // A reload stops when its dialog is cancelled.
    dialogAnswer_ = "OnCancel";
    controller_.OnReload(nullptr);

    EXPECT_EQ(story(), join({{"main: MainWindow.tableContacts reloadData"},
                             progressOpens(),
                             {"main: detach LoadContacts"},
                             loading(1),
                             dialogRuns()}));
    EXPECT_EQ(AppData::app().progress(), nullptr);
    EXPECT_EQ(total_.stringValue, "0 duplicates of 1");
    EXPECT_TRUE(table_.isEnabled);
    EXPECT_TRUE(application_.failures.empty());
}

TEST_F(PipelineTest, RunsEachJobOnItsOwnThread)
{
    activate();
    controller_.OnDelete(nullptr);
    application_.runUntilIdle();

    EXPECT_EQ(application_.threads,
              (Story{"LoadContacts", "FindDuplicates", "DeleteCheckedContacts"}));
}

TEST_F(PipelineTest, LeavesAnEmptyTableNoProgressWindowAndNoThreadAfterACancelledFirstDialog)
{
    dialogAnswer_ = "OnCancel";

    activate();

    EXPECT_EQ(controller_.numberOfRows(), 0U);
    EXPECT_EQ(AppData::app().progress(), nullptr);
    EXPECT_EQ(application_.threads, Story{"LoadContacts"});
    EXPECT_EQ(count("main: msgReload "), 0U);

    // A later reload shows the dialog again, and searches once it is confirmed.
    dialogAnswer_ = "OnOkay";
    controller_.OnReload(nullptr);
    application_.runUntilIdle();

    EXPECT_EQ(count("main: dialog runs"), 2U);
    EXPECT_EQ(total_.stringValue, "2 duplicates of 3");
}

TEST_F(PipelineTest, KeepsTheTableEmptyAfterAReloadWhoseDialogIsCancelledUntilTheNextOne)
{
    activate();
    dialogAnswer_ = "OnCancel";

    controller_.OnReload(nullptr);

    EXPECT_EQ(table_.rows, 0U);
    EXPECT_EQ(total_.stringValue, "2 duplicates of 3");
    application_.runUntilIdle();
    EXPECT_EQ(table_.rows, 0U);
    EXPECT_EQ(controller_.numberOfRows(), 0U);
    EXPECT_EQ(total_.stringValue, "2 duplicates of 3");

    dialogAnswer_ = "OnOkay";
    controller_.OnReload(nullptr);
    application_.runUntilIdle();
    EXPECT_EQ(table_.rows, 2U);
}

TEST_F(PipelineTest, SearchesByTheFieldsJustChosen)
{
    application_.onRunModal = [this](Window& /*window*/) {
        auto& dialog = *loader_.last;
        auto& firstName = dialog.checkBox("btnFilterFirstname");
        firstName.shown = CheckState::Off;
        dialog.command("OnCheckBoxes").use(&firstName);
        dialog.command("OnOkay").use();
    };

    activate();

    // All three have the last name Lee.
    EXPECT_EQ(total_.stringValue, "3 duplicates of 3");
}

TEST_F(PipelineTest, EndsEveryJobOfAnEmptyBook)
{
    platform_.addressBook = FakeAddressBook();

    activate();

    EXPECT_EQ(total_.stringValue, "0 duplicates of 0");
    EXPECT_EQ(AppData::app().progress(), nullptr);
    EXPECT_EQ(count("worker: ProgressWindow.progress setNeedsDisplay"), 0U);
}

TEST_F(PipelineTest, RunsWithoutAProgressWindow)
{
    loader_.missing.insert("ProgressWindow");

    activate();
    controller_.OnDelete(nullptr);
    application_.runUntilIdle();

    EXPECT_EQ(platform_.addressBook.storedUids(), (Uids{"ann-1", "ben"}));
    EXPECT_EQ(total_.stringValue, "1 duplicates of 2");
    EXPECT_TRUE(table_.isEnabled);
}

TEST_F(PipelineTest, StopsAfterTheLoadIfTheDialogIsMissing)
{
    loader_.missing.insert("FilterWindow");

    activate();

    EXPECT_EQ(application_.threads, Story{"LoadContacts"});
    EXPECT_EQ(AppData::app().progress(), nullptr);
    EXPECT_EQ(controller_.numberOfRows(), 0U);
}

}  // namespace
}  // namespace dunmora::test
