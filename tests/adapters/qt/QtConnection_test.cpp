#include "adapters/qt/QtConnectionOpener.h"
#include "tests/adapters/qt/HeldProxySettings.h"
#include "tests/adapters/qt/LoopbackServer.h"
#include "tests/adapters/qt/QtTest.h"

#include <QNetworkProxy>
#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslSocket>
#include <QTimer>
#include <QUrl>

#include <chrono>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/socket.h>

namespace dunmora::test {

namespace {

using namespace std::chrono_literals;

using Events = std::vector<std::string>;

// The longest body accepted, in bytes.
constexpr int kMaximumBody = 1 << 20;

const QByteArray kThreeLines = "0.2\nhttp://example.com/get\nBetter.";

/// Records the events of a transfer.
class RecordingDelegate final : public ConnectionDelegate {
public:
    void didReceiveResponse(const Connection& /*connection*/) override
    {
        events.emplace_back("response");
        onResponse();
    }
    void didReceiveData(const Connection& /*connection*/, std::string_view bytes) override
    {
        body += bytes;
        onData();
    }
    std::string willSendRequest(const Connection& /*connection*/, const std::string& url) override
    {
        redirects.push_back(url);
        onRedirect();
        return url;
    }
    void didFailWithError(const Connection& /*connection*/, const std::string& description) override
    {
        events.emplace_back("failed");
        failure = description;
    }
    void connectionDidFinishLoading(const Connection& /*connection*/) override
    {
        events.emplace_back("finished");
    }

    bool hasEnded() const
    {
        return !events.empty() && (events.back() == "failed" || events.back() == "finished");
    }

    std::function<void()> onResponse = [] {};
    std::function<void()> onData = [] {};
    std::function<void()> onRedirect = [] {};
    Events events;
    Events redirects;
    std::string body;
    std::string failure;
};

QNetworkProxy proxyAt(const LoopbackServer& server)
{
    const QUrl address(QString::fromStdString(server.url()));
    return {QNetworkProxy::HttpProxy, address.host(), static_cast<quint16>(address.port())};
}

class QtConnectionTest : public QtTest {
protected:
    /// Gets a path of the server and waits for the end of the transfer.
    void get(const std::string& path = "/")
    {
        connection = opener->openConnection(server.url(path), delegate);
        handleEventsUntil([&] { return delegate.hasEnded(); });
        // Anything after the end would show.
        handleEvents();
    }

    void expectFinished(const QByteArray& body) const
    {
        EXPECT_EQ(delegate.events, (Events{"response", "finished"})) << delegate.failure;
        EXPECT_EQ(delegate.body, body.toStdString());
    }

    void expectFailed() const
    {
        ASSERT_FALSE(delegate.events.empty());
        EXPECT_EQ(delegate.events.back(), "failed");
        EXPECT_FALSE(delegate.failure.empty());
    }

    void useTimeout(std::chrono::milliseconds timeout) { opener.emplace(timeout); }

    LoopbackServer server;
    RecordingDelegate delegate;
    std::optional<QtConnectionOpener> opener{std::in_place};
    std::shared_ptr<Connection> connection;
};

TEST_F(QtConnectionTest, SendsAPlainGetThatRevealsNothingAboutTheUser)
{
    server.respondWith(httpResponse(200, kThreeLines));

    get("/update/?app=dunmoraapp");

    ASSERT_EQ(server.requests.size(), 1U);
    const auto& request = server.requests.front();
    EXPECT_TRUE(request.starts_with("GET /update/?app=dunmoraapp HTTP/1.1\r\n")) << request;
    EXPECT_TRUE(request.ends_with("\r\n\r\n")) << request;
    for (const char* const telling : {"User-Agent", "Accept-Language", "Cookie", "Referer"}) {
        EXPECT_EQ(request.find(telling), std::string::npos) << request;
    }
    EXPECT_NE(request.find("\r\nHost: " + server.url().substr(7, server.url().size() - 8) + "\r\n"),
              std::string::npos)
        << request;
}

TEST_F(QtConnectionTest, ReportsTheResponseItsBodyAndItsEnd)
{
    server.respondWith(httpResponse(200, kThreeLines));

    get();

    expectFinished(kThreeLines);
}

/// Whether this process has loaded the system's library for encryption.
bool hasEncryption()
{
    std::ifstream maps("/proc/self/maps");
    const std::string all(std::istreambuf_iterator<char>(maps), {});
    return all.find("/libssl") != std::string::npos;
}

TEST_F(QtConnectionTest, LoadsNoEncryptionForAPlainServer)
{
    // An earlier test in the same process may have loaded it.
    const bool before = hasEncryption();
    server.respond = [](const std::string& path, QTcpSocket& socket) {
        socket.write(path == "/" ? httpResponse(302, {}, "Location: /end\r\n")
                                 : httpResponse(200, kThreeLines));
        socket.disconnectFromHost();
    };

    get();

    expectFinished(kThreeLines);
    EXPECT_EQ(hasEncryption(), before);
    // What loads it is seen here.
    EXPECT_TRUE(QSslSocket::supportsSsl() && hasEncryption());
}

TEST_F(QtConnectionTest, JoinsAChunkedBody)
{
    server.respondWith("HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n"
                       "4\r\n0.2\n\r\n2;x=y\r\nUR\r\n6\r\nL\nText\r\n0\r\n\r\n");

    get();

    expectFinished("0.2\nURL\nText");
}

TEST_F(QtConnectionTest, AcceptsABodyEndedByTheConnection)
{
    server.respondWith("HTTP/1.0 200 OK\r\n\r\n" + kThreeLines);

    get();

    expectFinished(kThreeLines);
}

TEST_F(QtConnectionTest, AcceptsALongBodyEndedByTheConnection)
{
    const QByteArray body(kMaximumBody, 'x');
    server.respondWith("HTTP/1.0 200 OK\r\n\r\n" + body);

    get();

    expectFinished(body);
}

TEST_F(QtConnectionTest, AcceptsAnEmptyBody)
{
    server.respondWith(httpResponse(200, {}));

    get();

    expectFinished({});
}

struct Status {
    int code;
    const char* headers;
};

class AnyStatusTest : public QtConnectionTest, public testing::WithParamInterface<Status> {};

TEST_P(AnyStatusTest, DeliversTheBody)
{
    server.respondWith(httpResponse(GetParam().code, kThreeLines, GetParam().headers));

    get();

    expectFinished(kThreeLines);
}

INSTANTIATE_TEST_SUITE_P(All, AnyStatusTest,
                         testing::Values(Status{201, ""}, Status{300, ""}, Status{302, ""},
                                         Status{400, ""}, Status{401, ""},
                                         Status{401, "WWW-Authenticate: Basic realm=\"x\"\r\n"},
                                         Status{403, ""}, Status{404, ""}, Status{405, ""},
                                         Status{407, ""}, Status{409, ""}, Status{410, ""},
                                         Status{418, ""}, Status{429, ""}, Status{500, ""},
                                         Status{501, ""}, Status{503, ""}, Status{599, ""}));

class RedirectTest : public QtConnectionTest, public testing::WithParamInterface<int> {};

TEST_P(RedirectTest, IsFollowedToTheAddressThatTheDelegateReturns)
{
    server.respond = [](const std::string& path, QTcpSocket& socket) {
        socket.write(path == "/a/b" ? httpResponse(GetParam(), "moved", "Location: ../c?d=e\r\n")
                                    : httpResponse(200, kThreeLines));
        socket.disconnectFromHost();
    };

    get("/a/b");

    expectFinished(kThreeLines);
    EXPECT_EQ(delegate.redirects, Events{server.url("/c?d=e")});
}

INSTANTIATE_TEST_SUITE_P(All, RedirectTest, testing::Values(301, 302, 303, 307, 308));

struct Redirect {
    const char* location;
    const char* target;
};

class OddLocationTest : public QtConnectionTest, public testing::WithParamInterface<Redirect> {};

TEST_P(OddLocationTest, IsRequestedByteForByte)
{
    server.respond = [](const std::string& path, QTcpSocket& socket) {
        const QByteArray location(GetParam().location);
        socket.write(path == "/" ? httpResponse(302, {}, "Location: " + location + "\r\n")
                                 : httpResponse(200, kThreeLines));
        socket.disconnectFromHost();
    };

    get();

    expectFinished(kThreeLines);
    EXPECT_EQ(delegate.redirects, Events{server.url(GetParam().target)});
    EXPECT_TRUE(server.requests.back().starts_with("GET " + std::string(GetParam().target) + " "))
        << server.requests.back();
}

INSTANTIATE_TEST_SUITE_P(
    All, OddLocationTest,
    testing::Values(Redirect{"/\xc3\xa4", "/%C3%A4"}, Redirect{"/\xe4", "/%E4"},
                    Redirect{"/\xe4?\xff=%e4", "/%E4?%FF=%E4"}, Redirect{"/a b", "/a%20b"},
                    Redirect{"/%zz%2f", "/%25zz%2F"}, Redirect{"/5%?a=%26b", "/5%25?a=%26b"},
                    Redirect{"/%2f%", "/%2F%25"}, Redirect{"/%2", "/%252"},
                    Redirect{"/%%2f", "/%25%2F"}, Redirect{"/%25zz", "/%25zz"}));

TEST_F(QtConnectionTest, FollowsRedirectsToInternationalHostNames)
{
    for (const QByteArray host : {"b\xc3\xbc"
                                  "cher.invalid",
                                  "b%C3%BCcher.invalid", "xn--bcher-kva.invalid"}) {
        delegate = {};
        delegate.onRedirect = [this] { connection->cancel(); };
        server.respondWith(httpResponse(302, {}, "Location: http://" + host + "/x\r\n"));

        connection = opener->openConnection(server.url(), delegate);
        handleEventsUntil([&] { return !delegate.redirects.empty(); });

        EXPECT_EQ(delegate.redirects, Events{"http://xn--bcher-kva.invalid/x"});
    }
}

/// An https server that clients trust during its lifetime.
class TrustedServer final {
public:
    TrustedServer()
    {
        auto trusting = before_;
        trusting.setCaCertificates({LoopbackServer::certificate()});
        QSslConfiguration::setDefaultConfiguration(trusting);
    }
    ~TrustedServer() { QSslConfiguration::setDefaultConfiguration(before_); }
    TrustedServer(const TrustedServer&) = delete;
    TrustedServer& operator=(const TrustedServer&) = delete;

    LoopbackServer* operator->() { return &server_; }

private:
    QSslConfiguration before_ = QSslConfiguration::defaultConfiguration();
    LoopbackServer server_{LoopbackServer::Protocol::Https};
};

TEST_F(QtConnectionTest, FollowsRedirectsToAnEncryptedServerAndBack)
{
    TrustedServer encrypted;
    const auto sendTo = [](const std::string& url) {
        return httpResponse(302, {}, "Location: " + QByteArray::fromStdString(url) + "\r\n");
    };
    encrypted->respondWith(sendTo(server.url("/end")));
    server.respond = [&](const std::string& path, QTcpSocket& socket) {
        socket.write(path == "/end" ? httpResponse(200, kThreeLines)
                                    : sendTo(encrypted->url("/x")));
        socket.disconnectFromHost();
    };

    get("/begin");

    expectFinished(kThreeLines);
    EXPECT_EQ(delegate.redirects, (Events{encrypted->url("/x"), server.url("/end")}));
}

/// An encrypted server that ends the connection with or without the closure alert of TLS.
class EncryptedEndTest : public QtConnectionTest {
protected:
    /// Gets the response from the server, which then closes the connection.
    void getAndClose(const QByteArray& response)
    {
        encrypted->respondWith(response);
        getEncrypted();
    }

    /// Gets the response from the server, after which the connection ends, as if somebody had cut
    /// it.
    void getAndCut(const QByteArray& response)
    {
        encrypted->respond = [response](const std::string& /*path*/, QTcpSocket& socket) {
            socket.write(response);
            socket.flush();
            ::shutdown(static_cast<int>(socket.socketDescriptor()), SHUT_WR);
        };
        getEncrypted();
    }

    TrustedServer encrypted;

private:
    void getEncrypted()
    {
        connection = opener->openConnection(encrypted->url(), delegate);
        handleEventsUntil([&] { return delegate.hasEnded(); });
        handleEvents();
    }
};

TEST_F(EncryptedEndTest, IsTheEndOfABodyWithoutALength)
{
    getAndClose("HTTP/1.0 200 OK\r\n\r\n" + kThreeLines);

    expectFinished(kThreeLines);
}

TEST_F(EncryptedEndTest, IsTheEndOfALongBodyWithoutALength)
{
    const QByteArray body(kMaximumBody, 'x');

    getAndClose("HTTP/1.0 200 OK\r\n\r\n" + body);

    expectFinished(body);
}

TEST_F(EncryptedEndTest, IsNotTheEndOfABodyWhenTheConnectionIsCut)
{
    getAndCut("HTTP/1.0 200 OK\r\n\r\n" + kThreeLines);

    EXPECT_EQ(delegate.events, (Events{"response", "failed"}));
    EXPECT_EQ(delegate.failure,
              "The server closed the connection before the response was complete.");
}

TEST_F(EncryptedEndTest, IsForgottenAfterARedirectToAPlainServer)
{
    server.respondWith("HTTP/1.0 200 OK\r\n\r\n" + kThreeLines);

    getAndCut(
        httpResponse(302, {}, "Location: " + QByteArray::fromStdString(server.url()) + "\r\n"));

    expectFinished(kThreeLines);
}

TEST_F(EncryptedEndTest, DoesNotMatterAfterABodyOfAKnownLength)
{
    getAndCut(httpResponse(200, kThreeLines));

    expectFinished(kThreeLines);
}

TEST_F(QtConnectionTest, FailsForAnUntrustedCertificate)
{
    LoopbackServer encrypted(LoopbackServer::Protocol::Https);
    encrypted.respondWith(httpResponse(200, kThreeLines));
    server.respondWith(
        httpResponse(302, {}, "Location: " + QByteArray::fromStdString(encrypted.url()) + "\r\n"));

    get();

    EXPECT_EQ(delegate.events, Events{"failed"});
    EXPECT_FALSE(delegate.failure.empty());
    EXPECT_EQ(encrypted.requests, Events{});
}

TEST_F(QtConnectionTest, FollowsAtMostTwentyRedirects)
{
    // Each path is the number of redirects that are left.
    server.respond = [](const std::string& path, QTcpSocket& socket) {
        const int left = std::stoi(path.substr(1));
        socket.write(
            left == 0
                ? httpResponse(200, kThreeLines)
                : httpResponse(302, {}, "Location: /" + QByteArray::number(left - 1) + "\r\n"));
        socket.disconnectFromHost();
    };

    get("/20");
    expectFinished(kThreeLines);

    delegate.events.clear();
    get("/21");
    EXPECT_EQ(delegate.events, Events{"failed"});
    EXPECT_EQ(delegate.failure, "The server redirects too many times.");
}

class ForeignRedirectTest : public QtConnectionTest,
                            public testing::WithParamInterface<const char*> {};

TEST_P(ForeignRedirectTest, Fails)
{
    server.respondWith(
        httpResponse(302, kThreeLines, "Location: " + QByteArray(GetParam()) + "\r\n"));

    get();

    EXPECT_EQ(delegate.events, Events{"failed"});
    EXPECT_EQ(delegate.failure,
              "The server redirects to an address that is neither http nor https.");
}

INSTANTIATE_TEST_SUITE_P(All, ForeignRedirectTest,
                         testing::Values("file:///etc/passwd", "ftp://127.0.0.1/", "data:,0.2",
                                         "http://", "http://[", "qrc:/interfaces/UpdateWindow.ui"));

TEST_F(QtConnectionTest, AcceptsAtMostOneMebibyteOfBody)
{
    server.respondWith(httpResponse(200, QByteArray(kMaximumBody, 'x')));
    get();
    expectFinished(QByteArray(kMaximumBody, 'x'));

    delegate = {};
    server.respondWith(httpResponse(200, QByteArray(kMaximumBody + 1, 'x')));
    get();
    EXPECT_EQ(delegate.events, (Events{"response", "failed"}));
    EXPECT_EQ(delegate.failure, "The server's response is too long.");
    EXPECT_LE(delegate.body.size(), static_cast<std::size_t>(kMaximumBody));
}

/// Keeps writing the bytes as long as the client reads them.
void flood(QTcpSocket& socket, const QByteArray& bytes)
{
    const auto write = [&socket, bytes] {
        if (socket.bytesToWrite() < bytes.size()) {
            socket.write(bytes);
        }
    };
    QObject::connect(&socket, &QTcpSocket::bytesWritten, &socket, write);
    write();
}

class FloodTest : public QtConnectionTest, public testing::WithParamInterface<const char*> {};

TEST_P(FloodTest, FailsBeforeReadingMuch)
{
    const QByteArray begin(GetParam());
    qint64 written = 0;
    server.respond = [&](const std::string& /*path*/, QTcpSocket& socket) {
        QObject::connect(&socket, &QTcpSocket::bytesWritten, &socket,
                         [&](qint64 bytes) { written += bytes; });
        socket.write(begin.left(begin.indexOf('|')));
        flood(socket, begin.mid(begin.indexOf('|') + 1).repeated(4096));
    };

    get();

    expectFailed();
    EXPECT_LE(delegate.body.size(), static_cast<std::size_t>(kMaximumBody));
    // The system's buffers accept more than the connection reads.
    EXPECT_LT(written, 16 << 20);
}

INSTANTIATE_TEST_SUITE_P(
    All, FloodTest,
    testing::Values("HTTP/1.1 200 OK\r\nContent-Length: 99999999999\r\n\r\n|0123456789",
                    "HTTP/1.1 200 OK\r\n\r\n|0123456789",
                    "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n|8\r\n01234567\r\n",
                    "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n|0000000000000000",
                    "HTTP/1.1 200 OK\r\n|X-More: 0123456789\r\n",
                    "HTTP/1.1 200 OK\r\nX-Long: |0123456789", "HTTP/1.1 200 |0123456789",
                    "|HTTP/1.1 100 Continue\r\n\r\n",
                    "HTTP/1.1 302 Found\r\nLocation: /|0123456789"));

class BrokenResponseTest : public QtConnectionTest,
                           public testing::WithParamInterface<const char*> {};

TEST_P(BrokenResponseTest, Fails)
{
    server.respondWith(GetParam());

    get();

    expectFailed();
}

INSTANTIATE_TEST_SUITE_P(
    All, BrokenResponseTest,
    testing::Values(
        "", "HTTP/1.1 200", "nonsense\r\n\r\n", "HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\n0.2",
        "HTTP/1.1 404 Not Found\r\nContent-Length: 10\r\n\r\n0.2",
        "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n4\r\n0.2\n\r\n",
        "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\nzz\r\n0.2\n\r\n0\r\n\r\n"));

TEST_F(QtConnectionTest, FailsWhenTheConnectionIsReset)
{
    server.respond = [](const std::string& /*path*/, QTcpSocket& socket) { socket.abort(); };

    get();

    EXPECT_EQ(delegate.events, Events{"failed"});
    EXPECT_FALSE(delegate.failure.empty());
}

TEST_F(QtConnectionTest, FailsWhenTheConnectionIsResetInTheMiddleOfTheBody)
{
    server.respond = [](const std::string& /*path*/, QTcpSocket& socket) {
        socket.write("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\n0.2");
    };
    delegate.onData = [this] { server.last->abort(); };

    get();

    EXPECT_EQ(delegate.events, (Events{"response", "failed"}));
    EXPECT_FALSE(delegate.failure.empty());
}

TEST_F(QtConnectionTest, FailsWhenTheConnectionIsRefused)
{
    std::string url;
    {
        const LoopbackServer gone;
        url = gone.url();
    }

    connection = opener->openConnection(url, delegate);
    handleEventsUntil([&] { return delegate.hasEnded(); });

    EXPECT_EQ(delegate.events, Events{"failed"});
    EXPECT_FALSE(delegate.failure.empty());
}

/// The server acts as the proxy in the user's settings.
class ProxyTest : public QtConnectionTest {
protected:
    void TearDown() override
    {
        QNetworkProxy::setApplicationProxy(QNetworkProxy(QNetworkProxy::NoProxy));
        QtConnectionTest::TearDown();
    }

    void getThroughProxy(const QString& user = {}, const QString& password = {})
    {
        auto proxy = proxyAt(server);
        proxy.setUser(user);
        proxy.setPassword(password);
        QNetworkProxy::setApplicationProxy(proxy);
        connection =
            opener->openConnection("http://dunmora.invalid/update/?app=dunmoraapp", delegate);
        handleEventsUntil([&] { return delegate.hasEnded(); });
        handleEvents();
    }
};

TEST_F(ProxyTest, GetsTheRequestInsteadOfTheServer)
{
    server.respondWith(httpResponse(200, kThreeLines));

    getThroughProxy();

    expectFinished(kThreeLines);
    const auto& request = server.requests.at(0);
    EXPECT_TRUE(request.starts_with("GET http://dunmora.invalid/update/?app=dunmoraapp HTTP/1.1\r\n"
                                    "Host: dunmora.invalid\r\n"))
        << request;
    EXPECT_EQ(request.find("Authorization"), std::string::npos) << request;
}

TEST_F(ProxyTest, GetsTheCredentialsInTheSettings)
{
    server.respondWith(httpResponse(200, kThreeLines));

    getThroughProxy(QStringLiteral("test"), QStringLiteral("123\u00a3"));

    expectFinished(kThreeLines);
    // The example of RFC 7617.
    EXPECT_NE(server.requests.at(0).find("\r\nProxy-Authorization: Basic dGVzdDoxMjPCow==\r\n"),
              std::string::npos)
        << server.requests.at(0);
}

TEST_F(ProxyTest, KeepsTheCredentialsFromServers)
{
    // Loopback addresses bypass the proxy.
    server.respond = [&](const std::string& target, QTcpSocket& socket) {
        const auto elsewhere =
            "Location: " + QByteArray::fromStdString(server.url("/end")) + "\r\n";
        socket.write(target == "/end" ? httpResponse(200, kThreeLines)
                                      : httpResponse(302, {}, elsewhere));
        socket.disconnectFromHost();
    };

    getThroughProxy(QStringLiteral("user"), QStringLiteral("password"));

    expectFinished(kThreeLines);
    ASSERT_EQ(server.requests.size(), 2U);
    EXPECT_NE(server.requests[0].find("Authorization"), std::string::npos);
    EXPECT_TRUE(server.requests[1].starts_with("GET /end HTTP/1.1\r\n"));
    EXPECT_EQ(server.requests[1].find("Authorization"), std::string::npos) << server.requests[1];
}

TEST_F(ProxyTest, FailsTheTransferWhenItRejectsTheUser)
{
    server.respondWith(httpResponse(407, kThreeLines, "Proxy-Authenticate: Basic realm=\"x\"\r\n"));

    getThroughProxy(QStringLiteral("user"), QStringLiteral("wrong"));

    EXPECT_EQ(delegate.events, Events{"failed"});
    EXPECT_EQ(delegate.failure, "The proxy requires a valid user name and password.");
    EXPECT_EQ(delegate.body, "");
}

/// Settings that take time to read and name the server as the proxy.
class SlowSettingsTest : public QtConnectionTest {
protected:
    void open()
    {
        server.respondWith(httpResponse(200, kThreeLines));
        connection = opener->openConnection("http://dunmora.invalid/", delegate);
        handleEventsUntil([&] { return settings.queries() == 1; });
    }

    /// Releases the settings and expects the transfer to ignore their reply.
    void expectReplyIgnored(const Events& before)
    {
        settings.release();
        // A later lookup is replied to after the first one.
        RecordingDelegate later;
        QtConnectionOpener other;
        other.openConnection("http://later.invalid/", later);
        handleEventsUntil([&] { return later.hasEnded(); });
        EXPECT_EQ(delegate.events, before);
        ASSERT_EQ(server.requests.size(), 1U);
        EXPECT_TRUE(server.requests.front().starts_with("GET http://later.invalid/ "));
    }

    HeldProxySettings settings{proxyAt(server)};
};

TEST_F(SlowSettingsTest, DoNotBlockTheEventLoop)
{
    open();
    int ticks = 0;
    QTimer clock;
    QObject::connect(&clock, &QTimer::timeout, [&] { ++ticks; });
    clock.start(1ms);

    handleEventsUntil([&] { return ticks == 10; });

    EXPECT_EQ(settings.replies(), 0);
    EXPECT_EQ(delegate.events, Events());
    settings.release();
    handleEventsUntil([&] { return delegate.hasEnded(); });
    expectFinished(kThreeLines);
}

TEST_F(SlowSettingsTest, CountTowardsTheTimeout)
{
    useTimeout(50ms);
    open();

    handleEventsUntil([&] { return delegate.hasEnded(); });

    EXPECT_EQ(settings.replies(), 0);
    EXPECT_EQ(delegate.failure, "The server does not respond.");
    expectReplyIgnored({"failed"});
}

TEST_F(SlowSettingsTest, AreIgnoredOnceTheTransferIsCancelled)
{
    open();

    connection->cancel();

    EXPECT_EQ(settings.replies(), 0);
    expectReplyIgnored({});
}

TEST_F(SlowSettingsTest, AreIgnoredOnceTheTransferIsDestroyed)
{
    open();

    opener.reset();
    connection.reset();
    handleEvents();

    EXPECT_EQ(settings.replies(), 0);
    expectReplyIgnored({});
}

class SilentServerTest : public QtConnectionTest,
                         public testing::WithParamInterface<const char*> {};

TEST_P(SilentServerTest, FailsAfterTheTimeout)
{
    useTimeout(50ms);
    server.respond = [](const std::string& /*path*/, QTcpSocket& socket) {
        socket.write(GetParam());
    };

    get();

    expectFailed();
    EXPECT_EQ(delegate.failure, "The server does not respond.");
}

INSTANTIATE_TEST_SUITE_P(All, SilentServerTest,
                         testing::Values("", "HTTP/1.1 200 OK\r\n",
                                         "HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\n",
                                         "HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\n0.2"));

TEST_F(QtConnectionTest, WaitsForASlowServerAsLongAsBytesArrive)
{
    useTimeout(500ms);
    QTimer drip;
    server.respond = [&](const std::string& /*path*/, QTcpSocket& socket) {
        socket.write("HTTP/1.1 200 OK\r\nContent-Length: 12\r\n\r\n");
        QObject::connect(&drip, &QTimer::timeout, &socket, [&socket] { socket.write("x"); });
        drip.start(60ms);
    };

    get();

    expectFinished("xxxxxxxxxxxx");
}

TEST_F(QtConnectionTest, TimesOutAfterAMinuteByDefault)
{
    EXPECT_EQ(QtConnectionOpener::kUsualTimeout, 60s);
}

TEST_F(QtConnectionTest, CallsTheDelegateOnlyAfterItIsReturned)
{
    server.respondWith(httpResponse(200, kThreeLines));

    connection = opener->openConnection(server.url(), delegate);
    EXPECT_EQ(delegate.events, Events());

    handleEventsUntil([&] { return delegate.hasEnded(); });
}

TEST_F(QtConnectionTest, CannotBeOpenedForAnythingButHttpAndHttps)
{
    for (const std::string url : {"", "file:///etc/passwd", "ftp://127.0.0.1/", "http://", "x",
                                  "http:///update/", "http://a b/", "data:,0.2"}) {
        EXPECT_EQ(opener->openConnection(url, delegate), nullptr) << url;
    }
}

TEST_F(QtConnectionTest, ContinuesWhenTheCallerDropsIt)
{
    server.respondWith(httpResponse(200, kThreeLines));

    opener->openConnection(server.url(), delegate);
    handleEventsUntil([&] { return delegate.hasEnded(); });

    expectFinished(kThreeLines);
}

TEST_F(QtConnectionTest, KeepsConcurrentTransfersApart)
{
    server.respond = [](const std::string& path, QTcpSocket& socket) {
        socket.write(httpResponse(200, QByteArray::fromStdString(path)));
        socket.disconnectFromHost();
    };
    RecordingDelegate other;

    opener->openConnection(server.url("/one"), delegate);
    opener->openConnection(server.url("/other"), other);
    handleEventsUntil([&] { return delegate.hasEnded() && other.hasEnded(); });

    EXPECT_EQ(delegate.body, "/one");
    EXPECT_EQ(other.body, "/other");
}

/// Cancels a transfer and expects no further event.
class CancelTest : public QtConnectionTest {
protected:
    /// Lets the response end, in case the transfer were still to report it.
    void expectNothingMore(const Events& before)
    {
        bool isGone = false;
        if (server.last != nullptr) {
            QObject::connect(server.last, &QTcpSocket::disconnected, server.last,
                             [&] { isGone = true; });
            handleEventsUntil([&] { return isGone || server.last == nullptr; });
        }
        handleEvents();
        EXPECT_EQ(delegate.events, before);
    }

    void open(const std::string& path = "/")
    {
        connection = opener->openConnection(server.url(path), delegate);
    }
};

TEST_F(CancelTest, ReportsNothingWhenCancelledAtOnce)
{
    server.respondWith(httpResponse(200, kThreeLines));
    open();

    connection->cancel();

    expectNothingMore({});
}

TEST_F(CancelTest, ReportsNothingMoreWhenCancelledMidway)
{
    server.respond = [](const std::string& /*path*/, QTcpSocket& socket) {
        socket.write("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\n0.2");
    };
    open();
    handleEventsUntil([&] { return !delegate.body.empty(); });

    connection->cancel();

    expectNothingMore({"response"});
    EXPECT_EQ(delegate.body, "0.2");
}

TEST_F(CancelTest, CanHappenInDidReceiveResponse)
{
    server.respondWith(httpResponse(200, kThreeLines));
    delegate.onResponse = [this] { connection->cancel(); };
    open();

    handleEventsUntil([&] { return !delegate.events.empty(); });

    expectNothingMore({"response"});
    EXPECT_EQ(delegate.body, "");
}

TEST_F(CancelTest, CanHappenInDidReceiveDataWithTheConnectionReleased)
{
    server.respondWith(httpResponse(200, QByteArray(kMaximumBody, 'x')));
    delegate.onData = [this] {
        connection->cancel();
        connection.reset();
    };
    open();

    handleEventsUntil([&] { return !delegate.body.empty(); });

    expectNothingMore({"response"});
    EXPECT_LT(delegate.body.size(), static_cast<std::size_t>(kMaximumBody));
}

TEST_F(CancelTest, CanHappenInWillSendRequest)
{
    server.respondWith(httpResponse(302, {}, "Location: /elsewhere\r\n"));
    delegate.onRedirect = [this] { connection->cancel(); };
    open();

    handleEventsUntil([&] { return !delegate.redirects.empty(); });

    expectNothingMore({});
    EXPECT_EQ(server.requests.size(), 1U);
}

TEST_F(CancelTest, LeavesAFinishedTransferAlone)
{
    server.respondWith(httpResponse(200, kThreeLines));
    get();

    connection->cancel();
    connection->cancel();

    expectNothingMore({"response", "finished"});
}

TEST_F(CancelTest, HappensWhenTheOpenerIsDestroyed)
{
    server.respond = [](const std::string& /*path*/, QTcpSocket& socket) {
        socket.write("HTTP/1.1 200 OK\r\nContent-Length: 10\r\n\r\n0.2");
    };
    open();
    handleEventsUntil([&] { return !delegate.body.empty(); });

    opener.reset();

    expectNothingMore({"response"});
    connection->cancel();
}

}  // namespace

}  // namespace dunmora::test
