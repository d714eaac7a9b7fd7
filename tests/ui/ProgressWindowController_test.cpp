#include "ui/ProgressWindowController.h"

#include "base/NotificationCenter.h"
#include "tests/fakes/DesktopTest.h"
#include "ui/AppData.h"

#include <atomic>
#include <memory>
#include <thread>
#include <utility>

namespace dunmora::test {
namespace {

class ProgressWindowTest : public DesktopTest {
protected:
    /// A progress window; the log does not contain its loading.
    std::shared_ptr<ProgressWindowController> opened()
    {
        auto controller = ProgressWindowController::init();
        log_.clear();
        return controller;
    }

    void postProgress(std::int32_t current, std::int32_t total)
    {
        auto progress = std::make_shared<Progress>();
        progress->total = total;
        progress->current = current;
        center_.postNotification(kMsgProgress, this, std::move(progress));
    }

    void postMessage(std::string_view text) { center_.postText(kMsgShowMessage, this, text); }

    NotificationCenter& center_ = NotificationCenter::defaultCenter();
};

const std::vector<std::string> kThirdOfFive = {
    "ProgressWindow.progress setMinValue 0.000000",
    "ProgressWindow.progress setMaxValue 5.000000",
    "ProgressWindow.progress setDoubleValue 2.000000",
    "ProgressWindow.progress setNeedsDisplay",
};

TEST_F(ProgressWindowTest, FloatsAboveTheOrdinaryWindowsOnceItIsLoaded)
{
    const auto controller = ProgressWindowController::init();

    EXPECT_EQ(calls(), (Calls{"load ProgressWindow", "ProgressWindow setLevel floating"}));
}

TEST_F(ProgressWindowTest, SetsMinimumMaximumAndValueBeforeItRequestsARedraw)
{
    const auto controller = opened();

    postProgress(2, 5);

    EXPECT_EQ(calls(), kThirdOfFive);
}

TEST_F(ProgressWindowTest, CallsEverySetterForEveryPost)
{
    const auto controller = opened();

    for (int i = 0; i < 100; ++i) {
        postProgress(2, 5);
    }

    EXPECT_EQ(calls().size(), 100 * kThirdOfFive.size());
}

TEST_F(ProgressWindowTest, SetsTheMaximumWithEveryPost)
{
    const auto controller = opened();
    postProgress(4, 5);
    log_.clear();

    postProgress(0, 3);

    EXPECT_EQ(calls()[1], "ProgressWindow.progress setMaxValue 3.000000");
    EXPECT_EQ(calls()[2], "ProgressWindow.progress setDoubleValue 0.000000");
}

TEST_F(ProgressWindowTest, SetsMinimumAndMaximumToZeroForATotalOfZero)
{
    const auto controller = opened();

    postProgress(0, 0);

    EXPECT_EQ(calls()[0], "ProgressWindow.progress setMinValue 0.000000");
    EXPECT_EQ(calls()[1], "ProgressWindow.progress setMaxValue 0.000000");
}

TEST_F(ProgressWindowTest, PassesOnAValueAboveTheMaximum)
{
    const auto controller = opened();

    postProgress(8, 5);

    EXPECT_EQ(calls()[1], "ProgressWindow.progress setMaxValue 5.000000");
    EXPECT_EQ(calls()[2], "ProgressWindow.progress setDoubleValue 8.000000");
}

TEST_F(ProgressWindowTest, ShowsZeroForNumbersThatAreMissing)
{
    const auto controller = opened();

    center_.postNotification(kMsgProgress, this);

    EXPECT_EQ(calls()[1], "ProgressWindow.progress setMaxValue 0.000000");
    EXPECT_EQ(calls()[2], "ProgressWindow.progress setDoubleValue 0.000000");
}

TEST_F(ProgressWindowTest, ShowsTheMessageAndRequestsARedraw)
{
    const auto controller = opened();

    postMessage("Loading Contacts...");

    EXPECT_EQ(calls(), (Calls{"ProgressWindow.txtInfo setStringValue Loading Contacts...",
                              "ProgressWindow.txtInfo setNeedsDisplay"}));
}

TEST_F(ProgressWindowTest, IsSetOnThePostingThreadWithoutWaitingForTheMainThread)
{
    const auto controller = opened();
    log_.prefix = [this] { return application_.isMainThread() ? "main " : "worker "; };

    // The main thread handles nothing here: a post that waited for it would never return.
    std::thread([this] { postProgress(2, 5); }).join();

    for (const auto& call : calls()) {
        EXPECT_TRUE(call.starts_with("worker ")) << call;
    }
    EXPECT_EQ(calls().size(), kThirdOfFive.size());
}

TEST_F(ProgressWindowTest, DoesNotExistWhenItsInterfaceIsMissing)
{
    loader_.missing.insert("ProgressWindow");

    EXPECT_EQ(ProgressWindowController::init(), nullptr);
    postMessage("Loading Contacts...");
    postProgress(2, 5);

    EXPECT_EQ(calls(), Calls{"load ProgressWindow"});
}

TEST_F(ProgressWindowTest, UnsubscribesWhenItsLastOwnerReleasesIt)
{
    auto controller = opened();

    controller.reset();
    postMessage("Loading Contacts...");
    postProgress(2, 5);

    EXPECT_EQ(calls(), Calls());
}

TEST_F(ProgressWindowTest, UnsubscribesWhenAnotherOneReplacesIt)
{
    AppData::app().setProgress(ProgressWindowController::init());
    AppData::app().setProgress(ProgressWindowController::init());
    log_.clear();

    postProgress(2, 5);

    EXPECT_EQ(calls(), kThirdOfFive);
}

TEST_F(ProgressWindowTest, IsNotUsedByAPostThatOutlivesIt)
{
    std::shared_ptr<ProgressWindowController> controller;
    center_.addObserver(&controller, kMsgProgress,
                        [&](const Notification&) { controller.reset(); });
    controller = opened();

    postProgress(2, 5);

    EXPECT_EQ(controller, nullptr);
    EXPECT_EQ(calls(), Calls());
    center_.removeObserver(&controller, kMsgProgress);
}

TEST_F(ProgressWindowTest, OutlivesItsLastOwnerUntilTheHandlerHasReturned)
{
    auto controller = opened();
    const std::weak_ptr<ProgressWindowController> watched = controller;
    log_.prefix = [&] {
        controller.reset();
        return std::string(watched.expired() ? "gone " : "");
    };

    std::thread([this] { postProgress(2, 5); }).join();

    EXPECT_EQ(calls(), kThirdOfFive);
    EXPECT_TRUE(watched.expired());
}

TEST_F(ProgressWindowTest, MayBeReleasedAtAnyMomentWhileAJobPosts)
{
    std::atomic<bool> stop = false;
    std::atomic<int> posts = 0;
    std::thread job([&] {
        while (!stop) {
            postMessage("Loading Contacts...");
            postProgress(2, 5);
            ++posts;
        }
    });

    for (int i = 0; i < 300; ++i) {
        const auto controller = ProgressWindowController::init();
        const int before = posts;
        while (posts == before) {
            std::this_thread::yield();
        }
        log_.clear();
    }
    stop = true;
    job.join();

    log_.clear();
    postProgress(2, 5);
    EXPECT_EQ(calls(), Calls());
}

}  // namespace
}  // namespace dunmora::test
