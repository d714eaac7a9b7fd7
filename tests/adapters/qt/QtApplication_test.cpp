#include "adapters/qt/QtAlert.h"
#include "tests/adapters/qt/QtTest.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <stdexcept>
#include <thread>
#include <vector>

namespace dunmora::test {

namespace {

using testing::ExitedWithCode;

class QtApplicationTest : public QtTest {};
using QtApplicationDeathTest = QtApplicationTest;

/// Tells on standard error what it hears, and does then what a test wants.
class TellingDelegate final : public ApplicationDelegate {
public:
    void applicationDidFinishLaunching() override
    {
        std::fputs("launched ", stderr);
        onLaunch();
    }
    void applicationDidBecomeActive() override
    {
        std::fputs("active ", stderr);
        onActive();
    }

    std::function<void()> onLaunch = [] {};
    std::function<void()> onActive = [] {};
};

/// The main window's: its end is the program's.
class EndingDelegate final : public WindowDelegate {
public:
    explicit EndingDelegate(Application& application) : application_(application) {}

    void windowWillClose() override { application_.terminate(this); }

private:
    Application& application_;
};

TEST_F(QtApplicationTest, PerformsAtOnceOnTheMainThread)
{
    bool isDone = false;

    application.performOnMainThread([&] { isDone = true; });

    EXPECT_TRUE(isDone);
}

TEST_F(QtApplicationTest, CarriesWorkOverToTheMainThreadFromSeveralThreads)
{
    constexpr int kThreads = 4;
    constexpr int kCalls = 500;
    const auto mainThread = std::this_thread::get_id();
    int calls = 0;
    std::atomic<int> ended = 0;

    for (int i = 0; i < kThreads; ++i) {
        application.detachNewThread("LoadContacts", [&] {
            for (int call = 0; call < kCalls; ++call) {
                application.performOnMainThread([&] {
                    EXPECT_EQ(std::this_thread::get_id(), mainThread);
                    ++calls;
                });
            }
            ++ended;
        });
    }
    handleEventsUntil([&] { return ended == kThreads; });

    EXPECT_EQ(calls, kThreads * kCalls);
}

TEST_F(QtApplicationTest, WaitsForWhatItHasCarriedOver)
{
    std::atomic<bool> isDone = false;
    std::atomic<bool> wasDone = false;
    std::atomic<bool> hasEnded = false;

    application.detachNewThread("LoadContacts", [&] {
        application.performOnMainThread([&] { isDone = true; });
        wasDone = isDone.load();
        hasEnded = true;
    });
    handleEventsUntil([&] { return hasEnded.load(); });

    EXPECT_TRUE(wasDone);
}

TEST_F(QtApplicationTest, ThrowsInTheCallerWhatTheWorkThrows)
{
    std::string caught;
    std::atomic<bool> hasEnded = false;

    application.detachNewThread("LoadContacts", [&] {
        try {
            application.performOnMainThread([] { throw std::runtime_error("broken"); });
        } catch (const std::runtime_error& error) {
            caught = error.what();
        }
        hasEnded = true;
    });
    handleEventsUntil([&] { return hasEnded.load(); });

    EXPECT_EQ(caught, "broken");
    EXPECT_THROW(application.performOnMainThread([] { throw std::runtime_error("broken"); }),
                 std::runtime_error);
}

TEST_F(QtApplicationTest, PerformsWhileASessionRuns)
{
    const auto interface = load("FilterWindow");

    application.detachNewThread("LoadContacts", [&] {
        application.performOnMainThread([&] { application.abortModal(); });
    });

    EXPECT_EQ(application.runModalForWindow(interface->window()), Application::kRunAborted);
}

TEST_F(QtApplicationTest, CarriesWorkOverWhileOtherCarriedWorkRunsASession)
{
    const auto interface = load("FilterWindow");
    std::atomic<int> ended = 0;
    std::vector<int> order;

    application.detachNewThread("LoadContacts", [&] {
        application.performOnMainThread([&] {
            application.detachNewThread("FindDuplicates", [&] {
                application.performOnMainThread([&] {
                    order.push_back(1);
                    application.abortModal();
                });
                ++ended;
            });
            application.runModalForWindow(interface->window());
            order.push_back(2);
        });
        ++ended;
    });
    handleEventsUntil([&] { return ended == 2; });

    EXPECT_EQ(order, (std::vector{1, 2}));
}

TEST_F(QtApplicationDeathTest, TellsOfTheLaunchAndOfEveryActivation)
{
    TellingDelegate delegate;
    const auto main = load("MainWindow");
    delegate.onLaunch = [&] { main->window().show(); };
    delegate.onActive = [&, activations = 0]() mutable {
        if (++activations == 2) {
            application.terminate(nullptr);
        }
        // The user goes to another program and comes back.
        soon([] {
            auto* const qt = qobject_cast<QGuiApplication*>(QCoreApplication::instance());
            Q_EMIT qt->applicationStateChanged(Qt::ApplicationInactive);
            Q_EMIT qt->applicationStateChanged(Qt::ApplicationActive);
        });
    };

    EXPECT_EXIT(application.run(delegate), ExitedWithCode(0), "launched .*active active ");
}

TEST_F(QtApplicationDeathTest, TellsAfterTheLaunchOfAnActivationThatCameBefore)
{
    TellingDelegate delegate;
    delegate.onActive = [&] { application.terminate(nullptr); };
    const auto main = load("MainWindow");
    main->window().show();
    // As an alert does that is shown before the launch.
    handleEventsUntil([] { return QGuiApplication::applicationState() == Qt::ApplicationActive; });
    delegate.onLaunch = [&] {
        soon([&] {
            std::fputs("never ", stderr);
            application.terminate(nullptr);
        });
    };

    EXPECT_EXIT(application.run(delegate), ExitedWithCode(0), "launched active $");
}

TEST_F(QtApplicationDeathTest, EndsWithStatus0AtOnce)
{
    EXPECT_EXIT(application.terminate(nullptr), ExitedWithCode(0), "");
}

TEST_F(QtApplicationDeathTest, EndsWithStatus0WhenTheDesktopAsksItToQuit)
{
    TellingDelegate delegate;
    delegate.onLaunch = [&] { soon([] { QCoreApplication::quit(); }); };

    EXPECT_EXIT(application.run(delegate), ExitedWithCode(0), "");
}

TEST_F(QtApplicationDeathTest, EndsWithStatus0WhenEveryEventLoopIsToldToReturn)
{
    TellingDelegate delegate;
    const auto filter = load("FilterWindow");
    delegate.onLaunch = [&] {
        soon([&] {
            soon([] { QCoreApplication::exit(3); });
            application.runModalForWindow(filter->window());
        });
    };

    EXPECT_EXIT(application.run(delegate), ExitedWithCode(0), "");
}

TEST_F(QtApplicationDeathTest, EndsWithStatus0WhenTheDisplayBreaksAway)
{
    TellingDelegate delegate;
    // As Qt does then.
    // NOLINTNEXTLINE(concurrency-mt-unsafe): no other thread runs
    delegate.onLaunch = [&] { soon([] { std::exit(1); }); };

    EXPECT_EXIT(application.run(delegate), ExitedWithCode(0), "");
}

TEST_F(QtApplicationDeathTest, LeavesAllAsItIsWhenTheDisplayBreaksAway)
{
    TellingDelegate delegate;
    delegate.onLaunch = [&] {
        soon([] {
            // As what is made while the program runs and would wait for its threads at the end.
            std::atexit([] { std::_Exit(3); });
            // NOLINTNEXTLINE(concurrency-mt-unsafe): no other thread runs
            std::exit(1);
        });
    };

    EXPECT_EXIT(application.run(delegate), ExitedWithCode(0), "");
}

TEST_F(QtApplicationDeathTest, EndsWithTheMainWindowInTheMiddleOfEverything)
{
    TellingDelegate delegate;
    EndingDelegate windowDelegate(application);
    const auto main = load("MainWindow");
    const auto filter = load("FilterWindow");
    QtAlert alert(application);
    main->window().setDelegate(&windowDelegate);
    delegate.onLaunch = [&] {
        main->window().show();
        application.detachNewThread("LoadContacts", [&] {
            // A dialog, an alert above it, and a job that waits for both.
            application.performOnMainThread([&] {
                soon([&] {
                    soon([] { pressCloseControl(shownWindow(QStringLiteral("MainWindow"))); });
                    alert.runModal({"Broken", "", "OK", std::nullopt});
                });
                application.runModalForWindow(filter->window());
            });
        });
    };

    EXPECT_EXIT(application.run(delegate), ExitedWithCode(0), "");
}

}  // namespace

}  // namespace dunmora::test
