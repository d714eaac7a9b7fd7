#pragma once

#include "adapters/http/HttpResponseReader.h"
#include "adapters/qt/ProxyQuestion.h"
#include "platform/Connection.h"

#include <QBasicTimer>
#include <QNetworkProxy>
#include <QObject>
#include <QUrl>

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>

class QSslSocket;
class QString;

namespace dunmora {

/// One GET of an http or https address. It follows redirects from one to the other and back, and
/// takes the body of every answer of a server, whatever its status. A body that is too long or not
/// whole, too many redirects, a server that falls silent and a proxy that lets nobody through are
/// failures; so are settings that do not say for as long which proxy to take.
///
/// It reads the answer itself: Qt's own client takes a body in chunks that is cut off for a whole
/// one, and reads a head that never ends for ever.
class QtConnection final : public QObject, public Connection {
public:
    /// Called once, when the transfer has finished, has failed or is cancelled.
    using Ended = std::function<void(const QtConnection& connection)>;

    /// Begins the transfer; it fails when no byte comes for `timeout`.
    QtConnection(const QUrl& url, ConnectionDelegate& delegate, std::chrono::milliseconds timeout,
                 Ended onEnd);
    ~QtConnection() override;
    QtConnection(const QtConnection&) = delete;
    QtConnection& operator=(const QtConnection&) = delete;

    void cancel() override;

    /// Whether an address can be got at all: http or https, and a host.
    static bool canGet(const QUrl& url);

protected:
    void timerEvent(QTimerEvent* event) override;

private:
    void get(const QUrl& url);
    void askForProxy();
    void open(const QNetworkProxy& proxy);
    void sendRequest();
    void readAnswer();
    void handleError();
    void handleEndOfAnswer();
    void takeHead();
    void takeBody();
    void finishWhenComplete();
    void redirect(const QUrl& proposed);
    void fail(const QString& description);
    ConnectionDelegate* end();
    void dropSocket();
    void beginSilence();

    // None once the transfer has ended.
    ConnectionDelegate* delegate_;
    std::chrono::milliseconds timeout_;
    Ended onEnd_;
    QBasicTimer silence_;
    int redirects_ = 0;
    std::size_t bodySize_ = 0;

    // Of the address in hand.
    QUrl url_;
    std::unique_ptr<ProxyQuestion> question_;
    // The proxy that gets the request in the server's stead; none where the socket goes through.
    std::optional<QNetworkProxy> asked_;
    QSslSocket* socket_ = nullptr;
    HttpResponseReader answer_;
    bool hasHead_ = false;
};

}  // namespace dunmora
