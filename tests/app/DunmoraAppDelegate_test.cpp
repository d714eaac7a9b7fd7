#include "app/DunmoraAppDelegate.h"

#include "base/NotificationCenter.h"
#include "base/Settings.h"
#include "engine/ContactsParser.h"
#include "platform/PlatformError.h"
#include "tests/fakes/DesktopTest.h"
#include "tests/fakes/NotificationRecorder.h"
#include "ui/AppData.h"
#include "ui/ProgressWindowController.h"

#include <algorithm>
#include <latch>
#include <memory>
#include <utility>

namespace dunmora::test {
namespace {

using Names = std::vector<std::string>;

const std::vector<std::string> kProgressWindowOpens = {
    "load ProgressWindow", "ProgressWindow setLevel floating", "ProgressWindow show"};

class DelegateTest : public DesktopTest {
protected:
    void SetUp() override
    {
        platform_.addressBook = FakeAddressBook({FakePerson()});
        // The default; a test may confirm the dialog instead.
        application_.onRunModal = [this](Window& /*window*/) { cancelDialog(); };
    }

    void confirmDialog() { loader_.last->command("OnOkay").use(); }
    void cancelDialog() { loader_.last->command("OnCancel").use(); }

    /// Posts the end of a job, like the engine.
    void finish(std::string_view job)
    {
        NotificationCenter::defaultCenter().postText(kMsgFinished, this, job);
    }

    /// Opens a progress window and clears the log.
    void openProgress()
    {
        delegate_.showProgress();
        log_.clear();
    }

    static const std::shared_ptr<ProgressWindowController>& progress()
    {
        return AppData::app().progress();
    }

    DunmoraAppDelegate delegate_;
};

// Launch and termination.

TEST_F(DelegateTest, KeepsTheMainWindow)
{
    FakeWindow mainWindow("MainWindow", log_);
    EXPECT_EQ(delegate_.window(), nullptr);

    delegate_.setWindow(&mainWindow);

    EXPECT_EQ(delegate_.window(), &mainWindow);
}

TEST_F(DelegateTest, StartsNothingAtLaunchBeforeTheFirstActivation)
{
    delegate_.applicationDidFinishLaunching();

    EXPECT_EQ(application_.threads, Names());
    EXPECT_EQ(progress(), nullptr);
    EXPECT_FALSE(updateWindow_->fakeWindow.isVisible) << "the update check is silent";
    EXPECT_EQ(platform_.userDefaults.reads(), 1) << "the first run is of no interest";
}

TEST_F(DelegateTest, ChecksForAnUpdateAtLaunchBeforeItSubscribes)
{
    openProgress();
    bool heardOfAJob = false;
    desktop_.connections.onOpen = [&] {
        finish("finding");
        heardOfAJob = progress() == nullptr;
    };

    delegate_.applicationDidFinishLaunching();

    EXPECT_EQ(desktop_.connections.opened.size(), 1U);
    EXPECT_FALSE(heardOfAJob);
    finish("finding");
    EXPECT_EQ(progress(), nullptr);
}

TEST_F(DelegateTest, ChecksForNoUpdateAtLaunchWhenTheUserHasDisabledIt)
{
    platform_.userDefaults.setBool("AutoCheckForUpdates", false);

    delegate_.applicationDidFinishLaunching();

    EXPECT_TRUE(desktop_.connections.opened.empty());
}

TEST_F(DelegateTest, ChecksForAnUpdateFromTheMenuWithTheSharedUpdater)
{
    delegate_.applicationDidFinishLaunching();

    delegate_.OnCheckForUpdate(nullptr);

    EXPECT_TRUE(updateWindow_->fakeWindow.isVisible);
    EXPECT_EQ(desktop_.connections.opened.size(), 2U);
}

TEST_F(DelegateTest, OpensAProgressWindowAndThenLoadsOnTheFirstActivation)
{
    Calls whenTheThreadStarts;
    bool progressIsStored = false;
    application_.onDetach = [&](std::string_view /*name*/) {
        whenTheThreadStarts = calls();
        progressIsStored = progress() != nullptr;
    };

    delegate_.applicationDidBecomeActive();
    application_.runUntilIdle();

    EXPECT_EQ(application_.threads, Names{"LoadContacts"});
    EXPECT_EQ(whenTheThreadStarts, kProgressWindowOpens);
    EXPECT_TRUE(progressIsStored);
    EXPECT_EQ(ContactsParser::parser().contacts().size(), 1U);
}

TEST_F(DelegateTest, StartsNoSecondLoadAndOpensNoSecondProgressWindowOnALaterActivation)
{
    delegate_.applicationDidBecomeActive();
    application_.runUntilIdle();
    log_.clear();

    delegate_.applicationDidBecomeActive();
    application_.runUntilIdle();

    EXPECT_EQ(application_.threads, Names{"LoadContacts"});
    EXPECT_EQ(calls(), Calls());
}

TEST_F(DelegateTest, IgnoresAnActivationDuringTheFirstOne)
{
    loader_.onLoad = [this](FakeInterface& /*interface*/) {
        delegate_.applicationDidBecomeActive();
    };

    delegate_.applicationDidBecomeActive();
    application_.runUntilIdle();

    EXPECT_EQ(application_.threads, Names{"LoadContacts"});
    EXPECT_EQ(std::ranges::count(log_.calls(), "load ProgressWindow"), 1);
}

TEST_F(DelegateTest, TerminatesTheApplicationWhenTheMainWindowCloses)
{
    FakeWindow mainWindow("MainWindow", log_);
    mainWindow.setDelegate(&delegate_);

    mainWindow.close();

    EXPECT_EQ(application_.terminations, std::vector<const void*>{&delegate_});
}

TEST_F(DelegateTest, TerminatesTheApplicationEvenWhileAJobRuns)
{
    std::latch reading(1);
    std::latch mayContinue(1);
    platform_.addressBook.onRead = [&] {
        reading.count_down();
        mayContinue.wait();
    };
    delegate_.applicationDidFinishLaunching();
    delegate_.applicationDidBecomeActive();
    reading.wait();

    delegate_.windowWillClose();

    EXPECT_EQ(application_.terminations, std::vector<const void*>{&delegate_});
    mayContinue.count_down();
    application_.runUntilIdle();
}

TEST_F(DelegateTest, IsNotCalledOnceDestroyed)
{
    {
        DunmoraAppDelegate shortLived;
        shortLived.applicationDidFinishLaunching();
    }
    openProgress();

    finish("finding");

    EXPECT_EQ(calls(), Calls());
    EXPECT_NE(progress(), nullptr);
}

// The progress window.

TEST_F(DelegateTest, ShowsANewProgressWindowAndStoresIt)
{
    delegate_.showProgress();

    EXPECT_EQ(calls(), kProgressWindowOpens);
    ASSERT_NE(progress(), nullptr);
    EXPECT_EQ(progress()->window(), &loader_.last->fakeWindow);
    EXPECT_EQ(progress().use_count(), 1);
}

TEST_F(DelegateTest, ReleasesThePreviousProgressWindowWithoutClosingIt)
{
    openProgress();
    const std::weak_ptr<ProgressWindowController> before = progress();

    delegate_.showProgress();

    EXPECT_TRUE(before.expired());
    EXPECT_EQ(calls(), kProgressWindowOpens);
}

TEST_F(DelegateTest, StoresNoProgressWindowWhenItsInterfaceIsMissing)
{
    openProgress();
    loader_.missing.insert("ProgressWindow");

    delegate_.showProgress();

    EXPECT_EQ(progress(), nullptr);
}

// The end of a job.

class JobEndTest : public DelegateTest {
protected:
    void SetUp() override
    {
        DelegateTest::SetUp();
        delegate_.applicationDidFinishLaunching();
        openProgress();
    }
};

TEST_F(JobEndTest, ClosesAndReleasesTheProgressWindowBeforeTheDialogOpens)
{
    Calls whenTheDialogLoads;
    bool progressIsStored = true;
    loader_.onLoad = [&](FakeInterface& /*interface*/) {
        whenTheDialogLoads = calls();
        progressIsStored = progress() != nullptr;
    };

    finish("loading");

    EXPECT_EQ(whenTheDialogLoads, (Calls{"ProgressWindow close", "load FilterWindow"}));
    EXPECT_FALSE(progressIsStored);
}

TEST_F(JobEndTest, StartsTheSearchWithANewProgressWindowWhenTheDialogIsConfirmed)
{
    application_.onRunModal = [this](Window& /*window*/) {
        log_.clear();
        confirmDialog();
    };
    Calls whenTheThreadStarts;
    application_.onDetach = [&](std::string_view /*name*/) { whenTheThreadStarts = calls(); };

    finish("loading");

    EXPECT_EQ(application_.threads, Names{"FindDuplicates"});
    EXPECT_EQ(whenTheThreadStarts,
              (Calls{"FilterWindow close", "load ProgressWindow",
                     "ProgressWindow setLevel floating", "ProgressWindow show"}));
    application_.runUntilIdle();
}

TEST_F(JobEndTest, StopsThePipelineWhenTheDialogIsCancelled)
{
    const NotificationRecorder recorder;

    finish("loading");

    EXPECT_EQ(application_.threads, Names());
    EXPECT_EQ(progress(), nullptr);
    EXPECT_EQ(recorder.lines(), Names{"msgFinished loading"});
    EXPECT_EQ(calls().back(), "FilterWindow close");
}

TEST_F(JobEndTest, StartsNoSearchWhenTheDialogsInterfaceIsMissing)
{
    loader_.missing.insert("FilterWindow");

    finish("loading");

    EXPECT_EQ(application_.threads, Names());
    EXPECT_EQ(progress(), nullptr);
}

TEST_F(JobEndTest, PostsNoReloadAfterLoadingEvenWhenTheDialogIsConfirmed)
{
    application_.onRunModal = [this](Window& /*window*/) { confirmDialog(); };
    std::size_t reloads = 0;
    NotificationCenter::defaultCenter().addObserver(this, kMsgReload,
                                                    [&](const Notification&) { ++reloads; });

    finish("loading");

    // The reload of the search waits for the main thread.
    EXPECT_EQ(reloads, 0U);
    application_.runUntilIdle();
    EXPECT_EQ(reloads, 1U);
    NotificationCenter::defaultCenter().removeObserver(this, kMsgReload);
}

class RowsChangedTest : public JobEndTest, public testing::WithParamInterface<const char*> {};

TEST_P(RowsChangedTest, PostsExactlyOneReloadWithTheDelegateAsSenderAndNoPayload)
{
    std::vector<const void*> senders;
    std::vector<std::size_t> payloads;
    NotificationCenter::defaultCenter().addObserver(
        this, kMsgReload, [&](const Notification& notification) {
            senders.push_back(notification.object);
            payloads.push_back(notification.userInfo.index());
        });

    finish(GetParam());

    EXPECT_EQ(senders, std::vector<const void*>{&delegate_});
    EXPECT_EQ(payloads, std::vector<std::size_t>{Payload(std::monostate()).index()});
    EXPECT_EQ(application_.threads, Names());
    NotificationCenter::defaultCenter().removeObserver(this, kMsgReload);
}

TEST_P(RowsChangedTest, ClosesAndReleasesTheProgressWindowBeforeThatReload)
{
    Calls atTheReload;
    bool progressIsStored = true;
    NotificationCenter::defaultCenter().addObserver(this, kMsgReload, [&](const Notification&) {
        atTheReload = calls();
        progressIsStored = progress() != nullptr;
    });

    finish(GetParam());

    EXPECT_EQ(atTheReload, Calls{"ProgressWindow close"});
    EXPECT_FALSE(progressIsStored);
    NotificationCenter::defaultCenter().removeObserver(this, kMsgReload);
}

INSTANTIATE_TEST_SUITE_P(All, RowsChangedTest, testing::Values("finding", "deleting"),
                         [](const auto& job) { return std::string(job.param); });

class AnyJobTest : public JobEndTest, public testing::WithParamInterface<const char*> {};

TEST_P(AnyJobTest, LeavesNoProgressWindow)
{
    finish(GetParam());

    EXPECT_EQ(calls().at(0), "ProgressWindow close");
    EXPECT_EQ(progress(), nullptr);
}

TEST_P(AnyJobTest, ReportsProgressToNoWindowUntilTheNextOneOpens)
{
    finish(GetParam());
    log_.clear();

    auto& center = NotificationCenter::defaultCenter();
    center.postText(kMsgShowMessage, this, "Loading Contacts...");
    center.postNotification(kMsgProgress, this, std::make_shared<Progress>());
    EXPECT_EQ(calls(), Calls());

    openProgress();
    center.postText(kMsgShowMessage, this, "Loading Contacts...");
    EXPECT_EQ(calls().at(0), "ProgressWindow.txtInfo setStringValue Loading Contacts...");
}

TEST_P(AnyJobTest, EndsNormallyWithoutAProgressWindow)
{
    AppData::app().setProgress(nullptr);
    const NotificationRecorder recorder;

    finish(GetParam());

    const std::string job = GetParam();
    EXPECT_EQ(recorder.count("msgReload"), job == "finding" || job == "deleting" ? 1U : 0U);
    EXPECT_EQ(calls().empty(), job != "loading");
    EXPECT_EQ(progress(), nullptr);
}

INSTANTIATE_TEST_SUITE_P(All, AnyJobTest,
                         testing::Values("loading", "finding", "deleting", "mending"),
                         [](const auto& job) { return std::string(job.param); });

class UnknownJobTest : public JobEndTest, public testing::WithParamInterface<const char*> {};

TEST_P(UnknownJobTest, ClosesTheProgressWindowAndChainsNothing)
{
    const NotificationRecorder recorder;

    finish(GetParam());

    EXPECT_EQ(calls(), Calls{"ProgressWindow close"});
    EXPECT_EQ(progress(), nullptr);
    EXPECT_EQ(recorder.lines().size(), 1U);
    EXPECT_EQ(application_.threads, Names());
}

INSTANTIATE_TEST_SUITE_P(NamesThatAreNearlyKnown, UnknownJobTest,
                         testing::Values("", "mending", "Loading", "loading ", "findin",
                                         "deletings"));

TEST_F(JobEndTest, WithoutAPayloadIsHandledAsAnUnknownJob)
{
    NotificationCenter::defaultCenter().postNotification(kMsgFinished, this);

    EXPECT_EQ(calls(), Calls{"ProgressWindow close"});
    EXPECT_EQ(progress(), nullptr);
}

TEST_F(JobEndTest, IsHandledDirectlyOnTheMainThread)
{
    finish("mending");

    EXPECT_EQ(progress(), nullptr);
}

TEST_F(JobEndTest, IsHandledOnTheMainThreadWhileThePostingThreadWaits)
{
    log_.prefix = [this] { return application_.isMainThread() ? "main " : "worker "; };
    bool wasHandledWhenThePostReturned = false;

    application_.detachNewThread("Job", [&] {
        finish("mending");
        wasHandledWhenThePostReturned = calls().size() == 1;
    });
    application_.runUntilIdle();

    EXPECT_EQ(calls(), Calls{"main ProgressWindow close"});
    EXPECT_TRUE(wasHandledWhenThePostReturned);
}

TEST_F(JobEndTest, BlocksTheLoadThreadUntilTheDialogCloses)
{
    bool hasReturned = false;
    bool hadReturnedInTheDialog = true;
    application_.onRunModal = [&](Window& /*window*/) {
        hadReturnedInTheDialog = hasReturned;
        cancelDialog();
    };

    application_.detachNewThread("LoadContacts", [&] {
        finish("loading");
        hasReturned = true;
    });
    application_.runUntilIdle();

    EXPECT_FALSE(hadReturnedInTheDialog);
    EXPECT_TRUE(hasReturned);
}

TEST_F(JobEndTest, ReleasesTheNameOfTheJob)
{
    auto name = std::make_shared<const std::string>("finding");
    const std::weak_ptr<const std::string> watched = name;

    NotificationCenter::defaultCenter().postNotification(kMsgFinished, this, std::move(name));

    EXPECT_TRUE(watched.expired());
}

TEST_F(JobEndTest, IsNotPostedWhenTheBookCannotBeReadSoTheProgressWindowStaysOpen)
{
    platform_.addressBook.onRead = [] { throw PlatformError("The book is torn."); };
    const NotificationRecorder recorder;

    application_.detachNewThread("LoadContacts", [this] { delegate_.LoadContacts(); });
    application_.runUntilIdle();

    ASSERT_EQ(application_.failures.size(), 1U);
    EXPECT_THROW(std::rethrow_exception(application_.failures[0]), PlatformError);
    EXPECT_EQ(recorder.count("msgFinished"), 0U);
    EXPECT_NE(progress(), nullptr);
    EXPECT_TRUE(platform_.alert.shown.empty());
}

}  // namespace
}  // namespace dunmora::test
