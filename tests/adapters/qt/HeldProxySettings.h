#pragma once

#include <QNetworkProxy>
#include <QNetworkProxyFactory>
#include <QNetworkProxyQuery>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <utility>

namespace dunmora::test {

/// Replaces the user's proxy settings during its lifetime. A query blocks until the test releases
/// it, like settings on a server that does not respond.
class HeldProxySettings final {
public:
    /// Names this proxy for every address beyond the loopback interface.
    explicit HeldProxySettings(const QNetworkProxy& proxy) : state_(std::make_shared<State>())
    {
        state_->proxy = proxy;
        QNetworkProxyFactory::setApplicationProxyFactory(new Factory(state_));
    }
    ~HeldProxySettings()
    {
        release();
        QNetworkProxy::setApplicationProxy(QNetworkProxy(QNetworkProxy::NoProxy));
    }
    HeldProxySettings(const HeldProxySettings&) = delete;
    HeldProxySettings& operator=(const HeldProxySettings&) = delete;

    void release()
    {
        const std::lock_guard lock(state_->mutex);
        state_->isHeld = false;
        state_->changed.notify_all();
    }

    /// The number of queries so far.
    int queries() const
    {
        const std::lock_guard lock(state_->mutex);
        return state_->queries;
    }

    /// The number of queries replied to.
    int replies() const
    {
        const std::lock_guard lock(state_->mutex);
        return state_->replies;
    }

    /// Blocks until a query has been replied to; handles no event meanwhile.
    void waitForReply()
    {
        std::unique_lock lock(state_->mutex);
        state_->changed.wait(lock, [this] { return state_->replies > 0; });
    }

private:
    struct State {
        std::mutex mutex;
        std::condition_variable changed;
        QNetworkProxy proxy;
        bool isHeld = true;
        int queries = 0;
        int replies = 0;
    };

    class Factory final : public QNetworkProxyFactory {
    public:
        explicit Factory(std::shared_ptr<State> state) : state_(std::move(state)) {}

        QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& /*query*/) override
        {
            // Longer than any test waits: a query on the main thread fails its test.
            constexpr std::chrono::seconds kAtMost(30);
            std::unique_lock lock(state_->mutex);
            ++state_->queries;
            state_->changed.wait_for(lock, kAtMost, [this] { return !state_->isHeld; });
            ++state_->replies;
            state_->changed.notify_all();
            return {state_->proxy};
        }

    private:
        std::shared_ptr<State> state_;
    };

    std::shared_ptr<State> state_;
};

}  // namespace dunmora::test
