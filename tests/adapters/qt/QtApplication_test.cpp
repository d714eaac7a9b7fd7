#include "adapters/qt/QtAlert.h"
#include "tests/adapters/qt/QtTest.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <functional>
#include <stdexcept>
#include <thread>
#include <vector>

namespace dunmora::test {

namespace {

using testing::ExitedWithCode;

class QtApplicationTest : public QtTest {};
using QtApplicationDeathTest = QtApplicationTest;

/// Writes each notification to standard error, then runs what the test wants.
class PrintingDelegate final : public ApplicationDelegate {
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

/// Terminates the application when the main window closes.
class TerminatingDelegate final : public WindowDelegate {
public:
    explicit TerminatingDelegate(Application& application) : application_(application) {}

    void windowWillClose() override { application_.terminate(this); }

private:
    Application& application_;
};

TEST_F(QtApplicationTest, RunsWorkDirectlyOnTheMainThread)
{
    bool isDone = false;

    application.performOnMainThread([&] { isDone = true; });

    EXPECT_TRUE(isDone);
}

TEST_F(QtApplicationTest, RunsWorkFromSeveralThreadsOnTheMainThread)
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

TEST_F(QtApplicationTest, WaitsForTheWorkToFinish)
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

TEST_F(QtApplicationTest, RethrowsWhatTheWorkThrows)
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

TEST_F(QtApplicationTest, RunsWorkDuringASession)
{
    const auto interface = load("FilterWindow");

    application.detachNewThread("LoadContacts", [&] {
        application.performOnMainThread([&] { application.abortModal(); });
    });

    EXPECT_EQ(application.runModalForWindow(interface->window()), Application::kRunAborted);
}

TEST_F(QtApplicationTest, RunsWorkDuringASessionThatOtherWorkRuns)
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

TEST_F(QtApplicationDeathTest, NotifiesOfTheLaunchAndOfEachActivation)
{
    PrintingDelegate delegate;
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

TEST_F(QtApplicationDeathTest, NotifiesAfterTheLaunchOfAnEarlierActivation)
{
    PrintingDelegate delegate;
    delegate.onActive = [&] { application.terminate(nullptr); };
    const auto main = load("MainWindow");
    main->window().show();
    // An alert before the launch activates the application, too.
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
    PrintingDelegate delegate;
    delegate.onLaunch = [&] { soon([] { QCoreApplication::quit(); }); };

    EXPECT_EXIT(application.run(delegate), ExitedWithCode(0), "");
}

TEST_F(QtApplicationDeathTest, EndsWithStatus0WhenAllEventLoopsQuit)
{
    PrintingDelegate delegate;
    const auto filter = load("FilterWindow");
    delegate.onLaunch = [&] {
        soon([&] {
            soon([] { QCoreApplication::exit(3); });
            application.runModalForWindow(filter->window());
        });
    };

    EXPECT_EXIT(application.run(delegate), ExitedWithCode(0), "");
}

TEST_F(QtApplicationDeathTest, EndsWithStatus0WhenTheDisplayConnectionBreaks)
{
    PrintingDelegate delegate;
    // Qt calls exit in this case.
    // NOLINTNEXTLINE(concurrency-mt-unsafe): no other thread runs
    delegate.onLaunch = [&] { soon([] { std::exit(1); }); };

    EXPECT_EXIT(application.run(delegate), ExitedWithCode(0), "");
}

TEST_F(QtApplicationDeathTest, DestroysNothingWhenTheDisplayConnectionBreaks)
{
    PrintingDelegate delegate;
    delegate.onLaunch = [&] {
        soon([] {
            // Simulates an object that waits for its threads when it is destroyed at exit.
            std::atexit([] { std::_Exit(3); });
            // NOLINTNEXTLINE(concurrency-mt-unsafe): no other thread runs
            std::exit(1);
        });
    };

    EXPECT_EXIT(application.run(delegate), ExitedWithCode(0), "");
}

TEST_F(QtApplicationDeathTest, EndsWhenTheMainWindowClosesWhateverIsRunning)
{
    PrintingDelegate delegate;
    TerminatingDelegate windowDelegate(application);
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
