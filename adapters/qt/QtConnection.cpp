#include "adapters/qt/QtConnection.h"

#include "adapters/qt/QtText.h"
#include "platform/PlatformError.h"

#include <QByteArray>
#include <QNetworkProxy>
#include <QSslSocket>
#include <QString>
#include <QTimerEvent>

#include <string_view>
#include <system_error>
#include <utility>

namespace dunmora {

namespace {

constexpr int kMostRedirects = 20;
constexpr std::size_t kLongestBody = std::size_t{1} << 20U;
// How much of an answer the socket holds ready for us.
constexpr qint64 kReadAhead = 64 << 10;
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

/// The address of what a server sends to, byte by byte. QUrl alone would replace what is not UTF-8,
/// and one "%" that begins no escape would make it escape the escapes.
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

/// What lets the user of the settings through a proxy (RFC 7617).
QByteArray authorization(const QNetworkProxy& proxy)
{
    if (proxy.user().isEmpty()) {
        return {};
    }
    const auto user = proxy.user() + QLatin1Char(':') + proxy.password();
    return "Proxy-Authorization: Basic " + user.toUtf8().toBase64() + "\r\n";
}

/// Only what HTTP itself wants: the server learns nothing of who asks. A proxy that is asked in its
/// stead is told whom it lets through.
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
    if (event->timerId() == silence_.timerId()) {
        fail(QStringLiteral("The server does not answer."));
    }
}

void QtConnection::get(const QUrl& url)
{
    url_ = url;
    answer_ = {};
    hasHead_ = false;
    beginSilence();
    // Not from within the call that asked for it, whatever the socket does.
    const auto askUnlessEnded = [this] {
        if (delegate_ != nullptr) {
            askForProxy();
        }
    };
    QMetaObject::invokeMethod(this, askUnlessEnded, Qt::QueuedConnection);
}

void QtConnection::askForProxy()
{
    const auto openThrough = [this](const QNetworkProxy& proxy) { open(proxy); };
    try {
        question_ = std::make_unique<ProxyQuestion>(url_, openThrough);
    } catch (const std::system_error& error) {
        fail(toQString(error.what()));
    }
}

void QtConnection::open(const QNetworkProxy& proxy)
{
    const bool encrypts = isEncrypted(url_);
    socket_ = new QSslSocket(this);
    socket_->setReadBufferSize(kReadAhead);
    connect(socket_, encrypts ? &QSslSocket::encrypted : &QSslSocket::connected, this,
            &QtConnection::sendRequest);
    connect(socket_, &QSslSocket::readyRead, this, &QtConnection::readAnswer);
    connect(socket_, &QSslSocket::errorOccurred, this, &QtConnection::handleError);

    asked_.reset();
    if (!encrypts && proxy.capabilities().testFlag(QNetworkProxy::CachingCapability)) {
        asked_ = proxy;
    }
    socket_->setProxy(asked_ ? QNetworkProxy(QNetworkProxy::NoProxy) : proxy);
    if (encrypts) {
        socket_->connectToHostEncrypted(url_.host(), static_cast<quint16>(url_.port(kHttpsPort)));
    } else if (asked_) {
        socket_->connectToHost(proxy.hostName(), proxy.port());
    } else {
        socket_->connectToHost(url_.host(), static_cast<quint16>(url_.port(kHttpPort)));
    }
}

void QtConnection::sendRequest()
{
    beginSilence();
    socket_->write(request(url_, asked_));
}

void QtConnection::readAnswer()
{
    beginSilence();
    while (socket_ != nullptr && socket_->bytesAvailable() > 0) {
        const auto bytes = socket_->read(kReadAhead);
        try {
            answer_.receive(
                std::string_view(bytes.constData(), static_cast<std::size_t>(bytes.size())));
        } catch (const PlatformError& error) {
            fail(toQString(error.what()));
            return;
        }
        takeHead();
        takeBody();
        finishWhenComplete();
    }
}

void QtConnection::handleError()
{
    if (socket_->error() != QAbstractSocket::RemoteHostClosedError) {
        fail(socket_->errorString());
        return;
    }
    readAnswer();
    if (socket_ != nullptr) {
        handleEndOfAnswer();
    }
}

void QtConnection::handleEndOfAnswer()
{
    try {
        answer_.receiveEnd();
    } catch (const PlatformError& error) {
        fail(toQString(error.what()));
        return;
    }
    finishWhenComplete();
}

void QtConnection::takeHead()
{
    if (hasHead_ || !answer_.head()) {
        return;
    }
    hasHead_ = true;
    const auto& head = *answer_.head();
    if (asked_ && head.status == kProxyAuthenticationRequired) {
        // The service has not been asked: the page is the proxy's.
        fail(QStringLiteral("The proxy wants a valid user name and password."));
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
    // What such an answer says besides is not for us.
    dropSocket();
    if (++redirects_ > kMostRedirects) {
        fail(QStringLiteral("The server redirects too often."));
        return;
    }
    const auto chosen = delegate_->willSendRequest(*this, proposed.toEncoded().toStdString());
    if (delegate_ == nullptr) {
        return;
    }
    const QUrl url(toQString(chosen));
    if (!canGet(url)) {
        fail(QStringLiteral("The server redirects to an address that is not of the web."));
        return;
    }
    get(url);
}

void QtConnection::takeBody()
{
    if (socket_ == nullptr) {
        return;
    }
    const auto bytes = answer_.takeBody();
    bodySize_ += bytes.size();
    if (bodySize_ > kLongestBody) {
        fail(QStringLiteral("The server's answer is too long."));
    } else if (!bytes.empty()) {
        delegate_->didReceiveData(*this, bytes);
    }
}

void QtConnection::finishWhenComplete()
{
    if (socket_ == nullptr || !answer_.isComplete()) {
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

/// Returns who is to hear of the end; none when the transfer had ended before.
ConnectionDelegate* QtConnection::end()
{
    silence_.stop();
    question_.reset();
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

void QtConnection::beginSilence()
{
    silence_.start(static_cast<int>(timeout_.count()), this);
}

}  // namespace dunmora
