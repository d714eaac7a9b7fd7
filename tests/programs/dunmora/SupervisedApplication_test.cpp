#include "programs/dunmora/SupervisedApplication.h"

#include "base/JobThreads.h"
#include "base/Settings.h"
#include "platform/PlatformError.h"
#include "programs/dunmora/JobObserver.h"
#include "tests/fakes/FakeApplication.h"
#include "tests/fakes/FakeInterface.h"
#include "tests/fakes/FakePlatform.h"

#include <gtest/gtest.h>

#include <new>
#include <stdexcept>
#include <system_error>

namespace dunmora::test {
namespace {

/// Writes down what it hears, one line each.
class RecordingObserver final : public JobObserver {
public:
    explicit RecordingObserver(FakeApplication& application) : application_(application) {}

    void jobsBegan(std::string_view name) override { write("began " + std::string(name)); }
    void jobFailed(std::string_view name, const std::string& text) override
    {
        write("failed " + std::string(name) + ": " + text);
        onFailure();
    }
    void jobsEnded() override { write("ended"); }

    std::vector<std::string> heard;
    std::function<void()> onFailure = [] {};

private:
    void write(const std::string& line)
    {
        heard.push_back(line + (application_.isMainThread() ? "" : " on a worker"));
    }

    FakeApplication& application_;
};

using Lines = std::vector<std::string>;

class SupervisedApplicationTest : public testing::Test {
protected:
    SupervisedApplicationTest() { application_.setObserver(&observer_); }

    /// What is told of a body's failure.
    std::string failureOf(const std::function<void()>& body)
    {
        observer_.heard.clear();
        application_.detachNewThread("Job", body);
        inner_.runUntilIdle();
        return observer_.heard.at(1);
    }

    FakePlatform platform_;
    FakeApplication inner_;
    RecordingObserver observer_{inner_};
    SupervisedApplication application_{inner_};
};

TEST_F(SupervisedApplicationTest, TellsWhenJobsBeginAndEnd)
{
    EXPECT_FALSE(application_.isBusy());

    application_.detachNewThread("Job", [] {});
    EXPECT_TRUE(application_.isBusy());
    EXPECT_EQ(observer_.heard, Lines{"began Job"});

    inner_.runUntilIdle();
    EXPECT_FALSE(application_.isBusy());
    EXPECT_EQ(observer_.heard, (Lines{"began Job", "ended"}));
    EXPECT_EQ(inner_.threads, Lines{"Job"});
}

TEST_F(SupervisedApplicationTest, CountsAJobThatAnotherOneStartsToTheSameWork)
{
    application_.detachNewThread("First", [this] {
        application_.performOnMainThread([this] { application_.detachNewThread("Second", [] {}); });
    });
    inner_.runUntilIdle();

    EXPECT_EQ(observer_.heard, (Lines{"began First", "ended"}));
    EXPECT_EQ(inner_.threads, (Lines{"First", "Second"}));

    application_.detachNewThread("Third", [] {});
    inner_.runUntilIdle();

    EXPECT_EQ(observer_.heard, (Lines{"began First", "ended", "began Third", "ended"}));
}

TEST_F(SupervisedApplicationTest, TellsAFailureWhileTheJobStillCounts)
{
    bool wasBusy = false;
    observer_.onFailure = [&] { wasBusy = application_.isBusy(); };

    application_.detachNewThread("Job", [] { throw PlatformError("The disk is full."); });
    inner_.runUntilIdle();

    EXPECT_EQ(observer_.heard, (Lines{"began Job", "failed Job: The disk is full.", "ended"}));
    EXPECT_TRUE(wasBusy);
    EXPECT_TRUE(inner_.failures.empty());
}

TEST_F(SupervisedApplicationTest, GoesOnWithTheJobThatAFailureHasStarted)
{
    observer_.onFailure = [this] { application_.detachNewThread("Second", [] {}); };

    application_.detachNewThread("First", [] { throw PlatformError("No."); });
    inner_.runUntilIdle();

    EXPECT_EQ(observer_.heard, (Lines{"began First", "failed First: No.", "ended"}));
    EXPECT_EQ(inner_.threads, (Lines{"First", "Second"}));
    EXPECT_FALSE(application_.isBusy());
}

TEST_F(SupervisedApplicationTest, HasWordsForEveryKindOfFailure)
{
    EXPECT_EQ(failureOf([] { throw std::out_of_range("index 7"); }),
              "failed Job: Something went wrong that should not have: index 7");
    EXPECT_EQ(failureOf([] { throw std::bad_alloc(); }),
              "failed Job: There is not enough memory to go on.");
    EXPECT_EQ(failureOf([] { throw 7; }), "failed Job: Something went wrong that should not have.");
}

TEST_F(SupervisedApplicationTest, KeepsCountWhenTheObserverFailsItself)
{
    observer_.onFailure = [] { throw std::runtime_error("No window."); };
    testing::internal::CaptureStderr();

    application_.detachNewThread("Job", [] { throw PlatformError("The disk is full."); });
    inner_.runUntilIdle();

    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "dunmora: The disk is full.\n"
              "dunmora: Something went wrong that should not have: No window.\n");
    EXPECT_EQ(observer_.heard.back(), "ended");
    EXPECT_FALSE(application_.isBusy());
}

TEST_F(SupervisedApplicationTest, LetsALoadSeeThePreferencesThatOthersStored)
{
    const auto disk = std::make_shared<FakeDisk>();
    FakeUserDefaults mine(disk);
    const Platform platform{platform_.addressBook, mine, platform_.alert, platform_.workspace,
                            platform_.bundle};
    Platform::install(platform);
    FakeUserDefaults others(disk);
    others.setBool("filterNickname", true);
    others.synchronize();
    const auto nickname = [&](std::string_view job) {
        bool isOn = false;
        application_.detachNewThread(job, [&] { isOn = Settings::settings().filterNickname(); });
        inner_.runUntilIdle();
        return isOn;
    };

    // The search goes by what the user has confirmed, and a deletion leaves the rows' fields alone.
    EXPECT_FALSE(nickname(kThreadFindDuplicates));
    EXPECT_FALSE(nickname(kThreadDeleteCheckedContacts));
    EXPECT_TRUE(nickname(kThreadLoadContacts));
}

TEST_F(SupervisedApplicationTest, RunsWithoutAnObserver)
{
    application_.setObserver(nullptr);

    application_.detachNewThread("Job", [] { throw PlatformError("Nobody listens."); });
    inner_.runUntilIdle();

    EXPECT_FALSE(application_.isBusy());
    EXPECT_TRUE(observer_.heard.empty());
}

TEST_F(SupervisedApplicationTest, ForwardsEverythingElse)
{
    CallLog log;
    FakeWindow window("Window", log);
    const int sender = 0;
    Window* shown = nullptr;
    inner_.onRunModal = [&](Window& modal) {
        shown = &modal;
        application_.abortModal();
    };

    EXPECT_EQ(application_.runModalForWindow(window), Application::kRunAborted);
    EXPECT_EQ(shown, &window);
    EXPECT_EQ(inner_.abortedSessions, 1U);

    application_.terminate(&sender);
    EXPECT_EQ(inner_.terminations, std::vector<const void*>{&sender});
}

/// An application on a machine that has no threads left.
class ThreadlessApplication final : public Application {
public:
    void terminate(const void* /*sender*/) override {}
    int runModalForWindow(Window& /*window*/) override { return kRunAborted; }
    void abortModal() override {}
    void detachNewThread(std::string_view /*name*/, std::function<void()> /*body*/) override
    {
        throw std::system_error(std::make_error_code(std::errc::resource_unavailable_try_again),
                                "no thread");
    }
    void performOnMainThread(const std::function<void()>& work) override { work(); }
};

TEST_F(SupervisedApplicationTest, TakesAThreadThatCannotBeStartedForAFailedJob)
{
    ThreadlessApplication threadless;
    SupervisedApplication application(threadless);
    application.setObserver(&observer_);

    application.detachNewThread("Job", [] {});

    ASSERT_EQ(observer_.heard.size(), 3U);
    EXPECT_EQ(observer_.heard[0], "began Job");
    EXPECT_TRUE(observer_.heard[1].starts_with(
        "failed Job: Something went wrong that should not have: no thread"));
    EXPECT_EQ(observer_.heard[2], "ended");
    EXPECT_FALSE(application.isBusy());
}

}  // namespace
}  // namespace dunmora::test
