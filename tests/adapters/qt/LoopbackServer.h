#pragma once

#include <QByteArray>
#include <QPointer>
#include <QTcpServer>
#include <QTcpSocket>

#include <functional>
#include <memory>
#include <string>
#include <vector>

class QSslCertificate;

namespace dunmora::test {

/// A server on the loopback interface that responds to each request exactly as the test says.
class LoopbackServer final {
public:
    enum class Protocol { Http, Https };

    /// Gets the path of the request and the socket to write to, which it may keep open, close, or
    /// reset with `abort`.
    using Respond = std::function<void(const std::string& path, QTcpSocket& socket)>;

    explicit LoopbackServer(Protocol protocol = Protocol::Http);

    /// The URL of a path on the server.
    std::string url(const std::string& path = "/") const;

    /// The self-signed certificate of the https server, which clients must be configured to trust.
    static QSslCertificate certificate();

    /// Responds with these bytes and closes the connection.
    void respondWith(const QByteArray& bytes);

    Respond respond;
    /// The heads of the requests so far.
    std::vector<std::string> requests;
    /// The most recent connection.
    QPointer<QTcpSocket> last;

private:
    void accept();
    void read(QTcpSocket& socket);

    Protocol protocol_;
    std::unique_ptr<QTcpServer> server_;
};

/// A complete response with this body.
QByteArray httpResponse(int status, const QByteArray& body, const QByteArray& headers = {});

}  // namespace dunmora::test
