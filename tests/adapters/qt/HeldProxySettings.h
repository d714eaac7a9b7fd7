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

/// Stands for the user's settings as long as it lives. Whoever asks them waits until the test lets
/// the answer go, as with settings that lie on a silent server.
class HeldProxySettings final {
public:
    /// They want this proxy for every address that is not on this machine.
    explicit HeldProxySettings(const QNetworkProxy& proxy) : state_(std::make_shared<State>())
    {
        state_->proxy = proxy;
        QNetworkProxyFactory::setApplicationProxyFactory(new Factory(state_));
    }
    ~HeldProxySettings()
    {
        letGo();
        QNetworkProxy::setApplicationProxy(QNetworkProxy(QNetworkProxy::NoProxy));
    }
    HeldProxySettings(const HeldProxySettings&) = delete;
    HeldProxySettings& operator=(const HeldProxySettings&) = delete;

    void letGo()
    {
        const std::lock_guard lock(state_->mutex);
        state_->isHeld = false;
        state_->changed.notify_all();
    }

    /// How often they have been asked.
    int asked() const
    {
        const std::lock_guard lock(state_->mutex);
        return state_->asked;
    }

    /// How many answers they have given.
    int answered() const
    {
        const std::lock_guard lock(state_->mutex);
        return state_->answered;
    }

    /// Waits until they have answered; no event is handled meanwhile.
    void waitUntilAnswered()
    {
        std::unique_lock lock(state_->mutex);
        state_->changed.wait(lock, [this] { return state_->answered > 0; });
    }

private:
    struct State {
        std::mutex mutex;
        std::condition_variable changed;
        QNetworkProxy proxy;
        bool isHeld = true;
        int asked = 0;
        int answered = 0;
    };

    class Factory final : public QNetworkProxyFactory {
    public:
        explicit Factory(std::shared_ptr<State> state) : state_(std::move(state)) {}

        QList<QNetworkProxy> queryProxy(const QNetworkProxyQuery& /*query*/) override
        {
            // Longer than a test waits for anything: only one that asks on its own thread gets
            // here.
            constexpr std::chrono::seconds kAtMost(30);
            std::unique_lock lock(state_->mutex);
            ++state_->asked;
            state_->changed.wait_for(lock, kAtMost, [this] { return !state_->isHeld; });
            ++state_->answered;
            state_->changed.notify_all();
            return {state_->proxy};
        }

    private:
        std::shared_ptr<State> state_;
    };

    std::shared_ptr<State> state_;
};

}  // namespace dunmora::test
