#include "adapters/qt/ProxyQuestion.h"

#include "adapters/posix/Descriptor.h"

#include <QByteArray>
#include <QList>
#include <QNetworkProxy>
#include <QNetworkProxyFactory>
#include <QNetworkProxyQuery>
#include <QSocketNotifier>
#include <QUrl>

#include <cerrno>
#include <future>
#include <string>
#include <system_error>
#include <thread>
#include <utility>

namespace dunmora {

/// All that the thread that asks may touch. It tells by a pipe and not by Qt's events, because when
/// it comes to that there may be nobody left to post them to.
struct ProxyQuestion::Answer {
    void ask(const std::string& url)
    {
        const QNetworkProxyQuery query(QUrl::fromEncoded(QByteArray::fromStdString(url)));
        // The first one that the settings name is the preferred one.
        proxy.set_value(QNetworkProxyFactory::proxyForQuery(query).value(0));
        writeAll(pipe.in, "!");
    }

    std::promise<QNetworkProxy> proxy;
    // Both ends stay open until nobody uses either.
    Pipe pipe = openPipe();
};

ProxyQuestion::ProxyQuestion(const QUrl& url, Answered answered)
    : answer_(std::make_shared<Answer>())
{
    if (!answer_->pipe.in.isOpen()) {
        throw std::system_error(errno, std::generic_category());
    }
    notifier_ =
        std::make_unique<QSocketNotifier>(answer_->pipe.out.number(), QSocketNotifier::Read);
    const auto tell = [this, answered = std::move(answered)] {
        notifier_->setEnabled(false);
        const auto proxy = answer_->proxy.get_future().get();
        // Who hears it may end the question.
        answered(proxy);
    };
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), tell);
    // The address goes over as text, so that the threads share no part of it.
    std::thread([answer = answer_, text = url.toEncoded().toStdString()] {
        answer->ask(text);
    }).detach();
}

ProxyQuestion::~ProxyQuestion() = default;

}  // namespace dunmora
