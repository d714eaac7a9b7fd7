#include "adapters/qt/ProxyQuestion.h"

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

class ProxyQuestionTest : public testing::Test {
protected:
    void ask()
    {
        question.emplace(QUrl(QStringLiteral("http://dunmora.invalid/")),
                         [this](const QNetworkProxy& proxy) {
                             EXPECT_EQ(QThread::currentThread(), qApp->thread());
                             answers.push_back(proxy);
                         });
    }

    /// Until all that an answer could bring has come.
    void handleTheAnswer()
    {
        handleEventsUntil([this] { return settings.answered() == settings.asked(); });
        handleEvents();
    }

    const QNetworkProxy wanted{QNetworkProxy::HttpProxy, QStringLiteral("proxy.invalid"), 8080};
    HeldProxySettings settings{wanted};
    std::optional<ProxyQuestion> question;
    QList<QNetworkProxy> answers;
};

TEST_F(ProxyQuestionTest, IsAnsweredFromTheEventLoop)
{
    ask();
    settings.letGo();
    EXPECT_EQ(answers, QList<QNetworkProxy>());

    handleEventsUntil([this] { return !answers.empty(); });

    handleEvents();
    EXPECT_EQ(answers, QList<QNetworkProxy>{wanted});
}

TEST_F(ProxyQuestionTest, IsNotAnsweredAfterItsEnd)
{
    ask();
    handleEventsUntil([this] { return settings.asked() == 1; });

    question.reset();
    settings.letGo();

    handleTheAnswer();
    EXPECT_EQ(answers, QList<QNetworkProxy>());
}

TEST_F(ProxyQuestionTest, IsNotAnsweredWhenItEndsWhileTheAnswerIsOnItsWay)
{
    ask();
    settings.letGo();
    settings.waitUntilAnswered();

    question.reset();

    handleEvents();
    EXPECT_EQ(answers, QList<QNetworkProxy>());
}

TEST_F(ProxyQuestionTest, MayEndInItsAnswer)
{
    question.emplace(QUrl(QStringLiteral("http://dunmora.invalid/")),
                     [this](const QNetworkProxy& proxy) {
                         question.reset();
                         answers.push_back(proxy);
                     });
    settings.letGo();

    handleEventsUntil([this] { return !answers.empty(); });

    EXPECT_EQ(answers, QList<QNetworkProxy>{wanted});
}

}  // namespace

}  // namespace dunmora::test
