#include "adapters/qt/ProxyLookup.h"

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

/// Everything that the lookup's thread may touch. It signals through a pipe rather than a Qt event:
/// by then the receiver of an event may be gone.
struct ProxyLookup::Result {
    void find(const std::string& url)
    {
        const QNetworkProxyQuery query(QUrl::fromEncoded(QByteArray::fromStdString(url)));
        // The settings name the preferred proxy first.
        proxy.set_value(QNetworkProxyFactory::proxyForQuery(query).value(0));
        writeAll(pipe.in, "!");
    }

    std::promise<QNetworkProxy> proxy;
    // Both ends stay open until neither thread uses them.
    Pipe pipe = openPipe();
};

ProxyLookup::ProxyLookup(const QUrl& url, Handler onFound) : result_(std::make_shared<Result>())
{
    if (!result_->pipe.in.isOpen()) {
        throw std::system_error(errno, std::generic_category());
    }
    notifier_ =
        std::make_unique<QSocketNotifier>(result_->pipe.out.number(), QSocketNotifier::Read);
    const auto report = [this, onFound = std::move(onFound)] {
        notifier_->setEnabled(false);
        const auto proxy = result_->proxy.get_future().get();
        // The handler may destroy this lookup.
        onFound(proxy);
    };
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(), report);
    // As text, because a copied QUrl shares its data with the original.
    std::thread([result = result_, text = url.toEncoded().toStdString()] {
        result->find(text);
    }).detach();
}

ProxyLookup::~ProxyLookup() = default;

}  // namespace dunmora
