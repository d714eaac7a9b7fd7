#include "programs/dunmora/SupervisedApplication.h"

#include "base/JobThreads.h"
#include "base/Settings.h"
#include "platform/PlatformError.h"
#include "programs/dunmora/FailureText.h"
#include "programs/dunmora/JobObserver.h"
#include "tests/fakes/FakeApplication.h"
#include "tests/fakes/FakeInterface.h"
#include "tests/fakes/FakePlatform.h"

#include <gtest/gtest.h>

#include <exception>
#include <new>
#include <stdexcept>
#include <system_error>

namespace dunmora::test {
namespace {

/// Records each notification as a line.
class RecordingObserver final : public JobObserver {
public:
    explicit RecordingObserver(FakeApplication& application) : application_(application) {}

    void jobsBegan(std::string_view name) override { write("began " + std::string(name)); }
    void jobFailed(std::string_view name, const std::exception_ptr& failure) override
    {
        write("failed " + std::string(name) + ": " + failureText(failure, "book.vcf"));
        onFailure();
    }
    void jobsEnded() override { write("ended"); }

    std::vector<std::string> events;
    std::function<void()> onFailure = [] {};

private:
    void write(const std::string& line)
    {
        events.push_back(line + (application_.isMainThread() ? "" : " on a worker"));
    }

    FakeApplication& application_;
};

using Lines = std::vector<std::string>;

class SupervisedApplicationTest : public testing::Test {
protected:
    SupervisedApplicationTest() { application_.setObserver(&observer_); }

    /// The notification of a failure in this body.
    std::string failureOf(const std::function<void()>& body)
    {
        observer_.events.clear();
        application_.detachNewThread("Job", body);
        inner_.runUntilIdle();
        return observer_.events.at(1);
    }

    FakePlatform platform_;
    FakeApplication inner_;
    RecordingObserver observer_{inner_};
    SupervisedApplication application_{inner_};
};

TEST_F(SupervisedApplicationTest, ReportsWhenJobsBeginAndEnd)
{
    EXPECT_FALSE(application_.isBusy());

    application_.detachNewThread("Job", [] {});
    EXPECT_TRUE(application_.isBusy());
    EXPECT_EQ(observer_.events, Lines{"began Job"});

    inner_.runUntilIdle();
    EXPECT_FALSE(application_.isBusy());
    EXPECT_EQ(observer_.events, (Lines{"began Job", "ended"}));
    EXPECT_EQ(inner_.threads, Lines{"Job"});
}

TEST_F(SupervisedApplicationTest, CountsAJobStartedByAJobAsTheSameWork)
{
    application_.detachNewThread("First", [this] {
        application_.performOnMainThread([this] { application_.detachNewThread("Second", [] {}); });
    });
    inner_.runUntilIdle();

    EXPECT_EQ(observer_.events, (Lines{"began First", "ended"}));
    EXPECT_EQ(inner_.threads, (Lines{"First", "Second"}));

    application_.detachNewThread("Third", [] {});
    inner_.runUntilIdle();

    EXPECT_EQ(observer_.events, (Lines{"began First", "ended", "began Third", "ended"}));
}

TEST_F(SupervisedApplicationTest, ReportsAFailureWhileTheJobStillCounts)
{
    bool wasBusy = false;
    observer_.onFailure = [&] { wasBusy = application_.isBusy(); };

    application_.detachNewThread("Job", [] { throw PlatformError("The disk is full."); });
    inner_.runUntilIdle();

    EXPECT_EQ(observer_.events, (Lines{"began Job", "failed Job: The disk is full.", "ended"}));
    EXPECT_TRUE(wasBusy);
    EXPECT_TRUE(inner_.failures.empty());
}

TEST_F(SupervisedApplicationTest, StaysBusyWithAJobStartedByAFailure)
{
    observer_.onFailure = [this] { application_.detachNewThread("Second", [] {}); };

    application_.detachNewThread("First", [] { throw PlatformError("No."); });
    inner_.runUntilIdle();

    EXPECT_EQ(observer_.events, (Lines{"began First", "failed First: No.", "ended"}));
    EXPECT_EQ(inner_.threads, (Lines{"First", "Second"}));
    EXPECT_FALSE(application_.isBusy());
}

TEST_F(SupervisedApplicationTest, DescribesEveryKindOfFailure)
{
    EXPECT_EQ(failureOf([] { throw std::out_of_range("index 7"); }),
              "failed Job: An unexpected error occurred: index 7");
    EXPECT_EQ(failureOf([] { throw std::bad_alloc(); }),
              "failed Job: There is not enough memory for “book.vcf”. Close other programs and try "
              "again.");
    EXPECT_EQ(failureOf([] { throw 7; }), "failed Job: An unexpected error occurred.");
}

TEST_F(SupervisedApplicationTest, KeepsCountingWhenTheObserverThrows)
{
    observer_.onFailure = [] { throw std::runtime_error("No window."); };
    testing::internal::CaptureStderr();

    application_.detachNewThread("Job", [] { throw PlatformError("The disk is full."); });
    inner_.runUntilIdle();

    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "dunmora: The disk is full.\n"
              "dunmora: An unexpected error occurred: No window.\n");
    EXPECT_EQ(observer_.events.back(), "ended");
    EXPECT_FALSE(application_.isBusy());
}

TEST_F(SupervisedApplicationTest, ReadsPreferencesOfOtherProgramsBeforeALoad)
{
    const auto disk = std::make_shared<FakeDisk>();
    FakeUserDefaults mine(disk);
    const Platform platform{&platform_.addressBook, mine, platform_.alert, platform_.workspace,
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

    // A search uses the fields that the user confirmed, and a deletion keeps those of its rows.
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
    EXPECT_TRUE(observer_.events.empty());
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

/// An application that cannot start threads.
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

TEST_F(SupervisedApplicationTest, ReportsAThreadThatCannotBeStartedAsAFailedJob)
{
    ThreadlessApplication threadless;
    SupervisedApplication application(threadless);
    application.setObserver(&observer_);

    application.detachNewThread("Job", [] {});

    ASSERT_EQ(observer_.events.size(), 3U);
    EXPECT_EQ(observer_.events[0], "began Job");
    EXPECT_TRUE(
        observer_.events[1].starts_with("failed Job: An unexpected error occurred: no thread"));
    EXPECT_EQ(observer_.events[2], "ended");
    EXPECT_FALSE(application.isBusy());
}

}  // namespace
}  // namespace dunmora::test
