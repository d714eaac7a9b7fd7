#pragma once

#include "adapters/http/HttpResponseReader.h"
#include "adapters/qt/ProxyLookup.h"
#include "platform/Connection.h"

#include <QBasicTimer>
#include <QNetworkProxy>
#include <QObject>
#include <QSsl>
#include <QUrl>

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>

class QString;
class QTcpSocket;

namespace dunmora {

/// One GET of an http or https address. It follows redirects between both schemes, and delivers the
/// body of every response, whatever its status. It fails on a body that is too long or incomplete,
/// on too many redirects, on a server that stops responding, on a proxy that rejects the user, and
/// on proxy settings that cannot be read in time.
///
/// It parses the response itself: Qt's own client accepts a truncated chunked body as complete, and
/// reads an endless head forever.
class QtConnection final : public QObject, public Connection {
public:
    /// Called once, when the transfer finishes, fails or is cancelled.
    using Ended = std::function<void(const QtConnection& connection)>;

    /// Starts the transfer; it fails when no byte arrives for `timeout`.
    QtConnection(const QUrl& url, ConnectionDelegate& delegate, std::chrono::milliseconds timeout,
                 Ended onEnd);
    ~QtConnection() override;
    QtConnection(const QtConnection&) = delete;
    QtConnection& operator=(const QtConnection&) = delete;

    void cancel() override;

    /// Whether the address is http or https and has a host.
    static bool canGet(const QUrl& url);

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    void get(const QUrl& url);
    void lookUpProxy();
    void connectThrough(const QNetworkProxy& proxy);
    void connectEncrypted(const QNetworkProxy& proxy);
    void connectPlain(const QNetworkProxy& proxy);
    void use(QTcpSocket& socket);
    void sendRequest();
    void readResponse();
    void handleError();
    void handleAlert(QSsl::AlertLevel level, QSsl::AlertType type);
    void handleEndOfResponse();
    void handleHead();
    void handleBody();
    void finishWhenComplete();
    void redirect(const QUrl& proposed);
    void fail(const QString& description);
    ConnectionDelegate* end();
    void dropSocket();
    void restartTimeout();

    // Null once the transfer has ended.
    ConnectionDelegate* delegate_;
    std::chrono::milliseconds timeout_;
    Ended onEnd_;
    QBasicTimer timer_;
    int redirects_ = 0;
    std::size_t bodySize_ = 0;

    // State of the current request.
    QUrl url_;
    std::unique_ptr<ProxyLookup> proxyLookup_;
    // The proxy that forwards a plain request; none when the socket tunnels or connects directly.
    std::optional<QNetworkProxy> forwarder_;
    QTcpSocket* socket_ = nullptr;
    HttpResponseReader response_;
    HttpResponseReader::Close close_ = HttpResponseReader::Close::Complete;
    bool hasHead_ = false;
};

}  // namespace dunmora
