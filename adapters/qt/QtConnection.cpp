#include "adapters/qt/QtConnection.h"

#include "adapters/qt/QtText.h"
#include "platform/PlatformError.h"

#include <QByteArray>
#include <QNetworkProxy>
#include <QSslSocket>
#include <QString>
#include <QTcpSocket>
#include <QTimerEvent>

#include <string_view>
#include <system_error>
#include <utility>

namespace dunmora {

namespace {

using Close = HttpResponseReader::Close;

constexpr int kMaximumRedirects = 20;
constexpr std::size_t kMaximumBody = std::size_t{1} << 20U;
// The size of the socket's read buffer.
constexpr qint64 kReadBuffer = 64 << 10;
constexpr int kHttpPort = 80;
constexpr int kHttpsPort = 443;
constexpr int kProxyAuthenticationRequired = 407;

bool isEncrypted(const QUrl& url)
{
    return url.scheme() == QLatin1String("https");
}

bool beginsWithEscape(std::string_view text)
{
    constexpr std::string_view kDigits = "0123456789ABCDEFabcdef";
    return text.size() >= 3 && text[0] == '%' && kDigits.find(text[1]) != std::string_view::npos &&
           kDigits.find(text[2]) != std::string_view::npos;
}

/// The address in a Location field, preserved byte by byte. QUrl alone would replace bytes that are
/// not UTF-8, and a stray "%" would make it escape the existing escapes again.
QUrl toUrl(std::string_view location)
{
    constexpr unsigned char kFirstBeyondAscii = 0x80;
    QByteArray escaped;
    for (std::size_t at = 0; at < location.size(); ++at) {
        const char c = location[at];
        if (static_cast<unsigned char>(c) >= kFirstBeyondAscii ||
            (c == '%' && !beginsWithEscape(location.substr(at)))) {
            escaped += '%' + QByteArray(1, c).toHex();
        } else {
            escaped += c;
        }
    }
    return QUrl::fromEncoded(escaped);
}

/// The credentials in the proxy settings as a header field (RFC 7617).
QByteArray authorization(const QNetworkProxy& proxy)
{
    if (proxy.user().isEmpty()) {
        return {};
    }
    const auto user = proxy.user() + QLatin1Char(':') + proxy.password();
    return "Proxy-Authorization: Basic " + user.toUtf8().toBase64() + "\r\n";
}

/// Only the fields that HTTP requires: the server learns nothing about the user. A forwarding proxy
/// gets its credentials.
QByteArray request(const QUrl& url, const std::optional<QNetworkProxy>& proxy)
{
    auto target = url.adjusted(QUrl::RemoveUserInfo | QUrl::RemoveFragment);
    if (target.path().isEmpty()) {
        target.setPath(QStringLiteral("/"));
    }
    const auto host = target.authority(QUrl::FullyEncoded).toUtf8();
    const auto resource =
        proxy ? target.toEncoded() : target.toEncoded(QUrl::RemoveScheme | QUrl::RemoveAuthority);
    return "GET " + resource + " HTTP/1.1\r\nHost: " + host + "\r\n" +
           (proxy ? authorization(*proxy) : QByteArray()) +
           "Accept: */*\r\nAccept-Encoding: identity\r\nConnection: close\r\n\r\n";
}

}  // namespace

QtConnection::QtConnection(const QUrl& url, ConnectionDelegate& delegate,
                           std::chrono::milliseconds timeout, Ended onEnd)
    : delegate_(&delegate), timeout_(timeout), onEnd_(std::move(onEnd))
{
    get(url);
}

QtConnection::~QtConnection()
{
    dropSocket();
}

void QtConnection::cancel()
{
    end();
}

bool QtConnection::canGet(const QUrl& url)
{
    const auto scheme = url.scheme();
    return url.isValid() && !url.host().isEmpty() &&
           (scheme == QLatin1String("http") || scheme == QLatin1String("https"));
}

void QtConnection::timerEvent(QTimerEvent* event)
{
    if (event->timerId() == timer_.timerId()) {
        fail(QStringLiteral("The server does not respond."));
    }
}

void QtConnection::get(const QUrl& url)
{
    url_ = url;
    response_ = {};
    hasHead_ = false;
    restartTimeout();
    // Queued, so that the delegate is never called from within openConnection.
    const auto startUnlessEnded = [this] {
        if (delegate_ != nullptr) {
            lookUpProxy();
        }
    };
    QMetaObject::invokeMethod(this, startUnlessEnded, Qt::QueuedConnection);
}

void QtConnection::lookUpProxy()
{
    const auto onFound = [this](const QNetworkProxy& proxy) { connectThrough(proxy); };
    try {
        proxyLookup_ = std::make_unique<ProxyLookup>(url_, onFound);
    } catch (const std::system_error& error) {
        fail(toQString(error.what()));
    }
}

void QtConnection::connectThrough(const QNetworkProxy& proxy)
{
    forwarder_.reset();
    if (isEncrypted(url_)) {
        connectEncrypted(proxy);
    } else {
        connectPlain(proxy);
    }
}

void QtConnection::connectEncrypted(const QNetworkProxy& proxy)
{
    auto* const socket = new QSslSocket(this);
    use(*socket);
    connect(socket, &QSslSocket::encrypted, this, &QtConnection::sendRequest);
    connect(socket, &QSslSocket::alertReceived, this, &QtConnection::handleAlert);
    close_ = Close::Incomplete;
    socket->setProxy(proxy);
    socket->connectToHostEncrypted(url_.host(), static_cast<quint16>(url_.port(kHttpsPort)));
}

/// Without QSslSocket, which loads the TLS library on the main thread even if it encrypts nothing.
void QtConnection::connectPlain(const QNetworkProxy& proxy)
{
    auto* const socket = new QTcpSocket(this);
    use(*socket);
    connect(socket, &QTcpSocket::connected, this, &QtConnection::sendRequest);
    close_ = Close::Complete;
    if (proxy.capabilities().testFlag(QNetworkProxy::CachingCapability)) {
        forwarder_ = proxy;
        socket->setProxy(QNetworkProxy::NoProxy);
        socket->connectToHost(proxy.hostName(), proxy.port());
    } else {
        socket->setProxy(proxy);
        socket->connectToHost(url_.host(), static_cast<quint16>(url_.port(kHttpPort)));
    }
}

void QtConnection::use(QTcpSocket& socket)
{
    socket_ = &socket;
    socket.setReadBufferSize(kReadBuffer);
    connect(&socket, &QTcpSocket::readyRead, this, &QtConnection::readResponse);
    connect(&socket, &QTcpSocket::errorOccurred, this, &QtConnection::handleError);
}

void QtConnection::sendRequest()
{
    restartTimeout();
    socket_->write(request(url_, forwarder_));
}

void QtConnection::readResponse()
{
    restartTimeout();
    while (socket_ != nullptr && socket_->bytesAvailable() > 0) {
        const auto bytes = socket_->read(kReadBuffer);
        try {
            response_.receive(
                std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
        } catch (const PlatformError& error) {
            fail(toQString(error.what()));
            return;
        }
        handleHead();
        handleBody();
        finishWhenComplete();
    }
}

void QtConnection::handleError()
{
    if (socket_->error() != QAbstractSocket::RemoteHostClosedError) {
        fail(socket_->errorString());
        return;
    }
    readResponse();
    if (socket_ != nullptr) {
        handleEndOfResponse();
    }
}

/// The socket reports the same error whether the server closes a TLS connection or somebody cuts
/// it. Only the server can send the alert. Where Qt's TLS does not report alerts, a body needs a
/// length.
void QtConnection::handleAlert(QSsl::AlertLevel /*level*/, QSsl::AlertType type)
{
    if (type == QSsl::AlertType::CloseNotify) {
        close_ = Close::Complete;
    }
}

void QtConnection::handleEndOfResponse()
{
    try {
        response_.receiveEnd(close_);
    } catch (const PlatformError& error) {
        fail(toQString(error.what()));
        return;
    }
    finishWhenComplete();
}

void QtConnection::handleHead()
{
    if (hasHead_ || !response_.head()) {
        return;
    }
    hasHead_ = true;
    const auto& head = *response_.head();
    if (forwarder_ && head.status == kProxyAuthenticationRequired) {
        // The response is the proxy's own; the server never saw the request.
        fail(QStringLiteral("The proxy requires a valid user name and password."));
        return;
    }
    if (!head.location.empty()) {
        redirect(url_.resolved(toUrl(head.location)));
    } else {
        delegate_->didReceiveResponse(*this);
    }
}

void QtConnection::redirect(const QUrl& proposed)
{
    // The rest of a redirect is of no use.
    dropSocket();
    if (++redirects_ > kMaximumRedirects) {
        fail(QStringLiteral("The server redirects too many times."));
        return;
    }
    const auto chosen = delegate_->willSendRequest(*this, proposed.toEncoded().toStdString());
    if (delegate_ == nullptr) {
        return;
    }
    const QUrl url(toQString(chosen));
    if (!canGet(url)) {
        fail(QStringLiteral("The server redirects to an address that is neither http nor https."));
        return;
    }
    get(url);
}

void QtConnection::handleBody()
{
    if (socket_ == nullptr) {
        return;
    }
    const auto bytes = response_.takeBody();
    bodySize_ += bytes.size();
    if (bodySize_ > kMaximumBody) {
        fail(QStringLiteral("The server's response is too long."));
    } else if (!bytes.empty()) {
        delegate_->didReceiveData(*this, bytes);
    }
}

void QtConnection::finishWhenComplete()
{
    if (socket_ == nullptr || !response_.isComplete()) {
        return;
    }
    if (auto* const delegate = end()) {
        delegate->connectionDidFinishLoading(*this);
    }
}

void QtConnection::fail(const QString& description)
{
    if (auto* const delegate = end()) {
        delegate->didFailWithError(*this, description.toStdString());
    }
}

/// Returns the delegate to notify, or null if the transfer had already ended.
ConnectionDelegate* QtConnection::end()
{
    timer_.stop();
    proxyLookup_.reset();
    dropSocket();
    auto* const delegate = std::exchange(delegate_, nullptr);
    if (const auto onEnd = std::exchange(onEnd_, {})) {
        onEnd(*this);
    }
    return delegate;
}

void QtConnection::dropSocket()
{
    if (auto* const socket = std::exchange(socket_, nullptr)) {
        socket->disconnect(this);
        socket->abort();
        socket->deleteLater();
    }
}

void QtConnection::restartTimeout()
{
    timer_.start(static_cast<int>(timeout_.count()), this);
}

}  // namespace dunmora
