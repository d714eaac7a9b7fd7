#include "base/NotificationCenter.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <thread>

namespace dunmora::test {
namespace {

class NotificationCenterTest : public testing::Test {
protected:
    void observe(const void* observer, std::string_view name, std::string mark)
    {
        center_.addObserver(observer, name, [this, mark = std::move(mark)](const Notification& n) {
            heard_.push_back(mark + ":" + std::string(n.name));
        });
    }

    NotificationCenter center_;
    std::vector<std::string> heard_;
    int ann_ = 0;
    int ben_ = 0;
};

using Heard = std::vector<std::string>;

TEST_F(NotificationCenterTest, IgnoresAPostWithoutObservers)
{
    center_.postText(kMsgFinished, this, "loading");

    EXPECT_TRUE(heard_.empty());
}

TEST_F(NotificationCenterTest, CallsEveryObserverOfTheNameInOrderBeforeThePostReturns)
{
    observe(&ann_, kMsgReload, "ann");
    observe(&ben_, kMsgReload, "ben");
    observe(&ben_, kMsgFinished, "ben");

    center_.postNotification(kMsgReload, this);

    EXPECT_EQ(heard_, (Heard{"ann:msgReload", "ben:msgReload"}));
}

TEST_F(NotificationCenterTest, DeliversOnThePostingThread)
{
    std::thread::id deliveredOn;
    center_.addObserver(&ann_, kMsgReload,
                        [&](const Notification&) { deliveredOn = std::this_thread::get_id(); });

    std::thread::id postedOn;
    std::thread([&] {
        postedOn = std::this_thread::get_id();
        center_.postNotification(kMsgReload, this);
    }).join();

    EXPECT_EQ(deliveredOn, postedOn);
    EXPECT_NE(deliveredOn, std::this_thread::get_id());
}

TEST_F(NotificationCenterTest, PassesTheSenderAndThePayload)
{
    const void* sender = nullptr;
    std::string text;
    center_.addObserver(&ann_, kMsgFinished, [&](const Notification& notification) {
        sender = notification.object;
        text = notification.text();
    });

    center_.postText(kMsgFinished, &ben_, "loading");

    EXPECT_EQ(sender, &ben_);
    EXPECT_EQ(text, "loading");
}

TEST_F(NotificationCenterTest, ReadsAMissingPayloadAsEmpty)
{
    center_.addObserver(&ann_, kMsgReload, [&](const Notification& notification) {
        EXPECT_EQ(notification.text(), "");
        EXPECT_EQ(notification.progress().total, 0);
        EXPECT_EQ(notification.progress().current, 0);
        heard_.emplace_back("checked");
    });

    center_.postNotification(kMsgReload, this);

    EXPECT_EQ(heard_, Heard{"checked"});
}

TEST_F(NotificationCenterTest, DoesNotCallARemovedObserverFromTheNextPostOn)
{
    observe(&ann_, kMsgProgress, "ann");
    observe(&ben_, kMsgProgress, "ben");
    center_.postNotification(kMsgProgress, this);
    heard_.clear();

    center_.removeObserver(&ann_, kMsgProgress);
    center_.postNotification(kMsgProgress, this);

    EXPECT_EQ(heard_, Heard{"ben:msgProgress"});
}

TEST_F(NotificationCenterTest, RemovesAnObserverFromTheNamedNotificationOnly)
{
    observe(&ann_, kMsgProgress, "ann");
    observe(&ann_, kMsgShowMessage, "ann");

    center_.removeObserver(&ann_, kMsgShowMessage);
    center_.postNotification(kMsgShowMessage, this);
    center_.postNotification(kMsgProgress, this);

    EXPECT_EQ(heard_, Heard{"ann:msgProgress"});
}

TEST_F(NotificationCenterTest, LetsAHandlerRemoveItself)
{
    center_.addObserver(&ann_, kMsgFinished, [this](const Notification&) {
        heard_.emplace_back("once");
        center_.removeObserver(&ann_, kMsgFinished);
    });

    center_.postText(kMsgFinished, this, "finding");
    center_.postText(kMsgFinished, this, "finding");

    EXPECT_EQ(heard_, Heard{"once"});
}

TEST_F(NotificationCenterTest, LetsAHandlerPost)
{
    observe(&ann_, kMsgReload, "ann");
    center_.addObserver(&ben_, kMsgFinished, [this](const Notification&) {
        center_.postNotification(kMsgReload, this);
        heard_.emplace_back("after");
    });

    center_.postText(kMsgFinished, this, "finding");

    EXPECT_EQ(heard_, (Heard{"ann:msgReload", "after"}));
}

TEST_F(NotificationCenterTest, PropagatesTheExceptionOfAHandler)
{
    center_.addObserver(&ann_, kMsgReload,
                        [](const Notification&) { throw std::runtime_error("no"); });

    EXPECT_THROW(center_.postNotification(kMsgReload, this), std::runtime_error);
}

TEST_F(NotificationCenterTest, FreesAPayloadThatNobodyObserves)
{
    auto progress = std::make_shared<Progress>();
    const std::weak_ptr<Progress> watched = progress;

    center_.postNotification(kMsgProgress, this, std::move(progress));

    EXPECT_TRUE(watched.expired());
}

TEST_F(NotificationCenterTest, KeepsAPayloadForAHandlerThatHoldsIt)
{
    Payload held;
    center_.addObserver(&ann_, kMsgFinished, [&](const Notification& n) { held = n.userInfo; });

    center_.postText(kMsgFinished, this, "deleting");

    EXPECT_EQ((Notification{kMsgFinished, this, held}.text()), "deleting");
}

TEST_F(NotificationCenterTest, TakesSubscriptionsFromOtherThreadsWhileAJobPosts)
{
    std::atomic<int> heard = 0;
    center_.addObserver(&ann_, kMsgProgress, [&](const Notification&) { ++heard; });

    std::thread job([&] {
        for (int i = 0; i < 1000; ++i) {
            center_.postNotification(kMsgProgress, this, std::make_shared<Progress>());
        }
    });
    for (int i = 0; i < 1000; ++i) {
        center_.addObserver(&ben_, kMsgProgress, [](const Notification&) {});
        center_.removeObserver(&ben_, kMsgProgress);
    }
    job.join();

    EXPECT_EQ(heard, 1000);
}

TEST(NotificationNames, AreTheFourOfTheProgram)
{
    EXPECT_EQ(kMsgShowMessage, "msgShowMessage");
    EXPECT_EQ(kMsgProgress, "msgProgress");
    EXPECT_EQ(kMsgFinished, "msgFinished");
    EXPECT_EQ(kMsgReload, "msgReload");
}

}  // namespace
}  // namespace dunmora::test
