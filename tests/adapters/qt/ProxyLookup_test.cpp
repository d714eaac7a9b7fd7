#include "adapters/qt/ProxyLookup.h"

#include "tests/adapters/qt/EventLoop.h"
#include "tests/adapters/qt/HeldProxySettings.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QList>
#include <QNetworkProxy>
#include <QString>
#include <QThread>
#include <QUrl>

#include <optional>

namespace dunmora::test {

namespace {

class ProxyLookupTest : public testing::Test {
protected:
    void start()
    {
        lookup.emplace(QUrl(QStringLiteral("http://dunmora.invalid/")),
                       [this](const QNetworkProxy& proxy) {
                           EXPECT_EQ(QThread::currentThread(), qApp->thread());
                           found.push_back(proxy);
                       });
    }

    /// Handles every event that the settings' reply could cause.
    void handleReply()
    {
        handleEventsUntil([this] { return settings.replies() == settings.queries(); });
        handleEvents();
    }

    const QNetworkProxy wanted{QNetworkProxy::HttpProxy, QStringLiteral("proxy.invalid"), 8080};
    HeldProxySettings settings{wanted};
    std::optional<ProxyLookup> lookup;
    QList<QNetworkProxy> found;
};

TEST_F(ProxyLookupTest, ReportsFromTheEventLoop)
{
    start();
    settings.release();
    EXPECT_EQ(found, QList<QNetworkProxy>());

    handleEventsUntil([this] { return !found.empty(); });

    handleEvents();
    EXPECT_EQ(found, QList<QNetworkProxy>{wanted});
}

TEST_F(ProxyLookupTest, ReportsNothingOnceDestroyed)
{
    start();
    handleEventsUntil([this] { return settings.queries() == 1; });

    lookup.reset();
    settings.release();

    handleReply();
    EXPECT_EQ(found, QList<QNetworkProxy>());
}

TEST_F(ProxyLookupTest, ReportsNothingWhenDestroyedBeforeTheReplyIsHandled)
{
    start();
    settings.release();
    settings.waitForReply();

    lookup.reset();

    handleEvents();
    EXPECT_EQ(found, QList<QNetworkProxy>());
}

TEST_F(ProxyLookupTest, CanBeDestroyedByItsHandler)
{
    lookup.emplace(QUrl(QStringLiteral("http://dunmora.invalid/")),
                   [this](const QNetworkProxy& proxy) {
                       lookup.reset();
                       found.push_back(proxy);
                   });
    settings.release();

    handleEventsUntil([this] { return !found.empty(); });

    EXPECT_EQ(found, QList<QNetworkProxy>{wanted});
}

}  // namespace

}  // namespace dunmora::test
