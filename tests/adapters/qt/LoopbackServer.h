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

/// A server on this machine that answers each request as the test says, byte by byte.
class LoopbackServer final {
public:
    enum class Protocol { Http, Https };

    /// Gets the path of the request and where to write. It may keep the socket, close it, or reset
    /// it with `abort`.
    using Answer = std::function<void(const std::string& path, QTcpSocket& socket)>;

    explicit LoopbackServer(Protocol protocol = Protocol::Http);

    /// The address of a path on it.
    std::string url(const std::string& path = "/") const;

    /// What the https server shows: it is issued by itself, so nobody trusts it unless told to.
    static QSslCertificate certificate();

    /// Answers with these bytes and closes.
    void answerWith(const QByteArray& bytes);

    Answer answer;
    /// The heads of the requests so far.
    std::vector<std::string> requests;
    /// The connection that was opened last.
    QPointer<QTcpSocket> last;

private:
    void accept();
    void read(QTcpSocket& socket);

    Protocol protocol_;
    std::unique_ptr<QTcpServer> server_;
};

/// A whole answer with this body.
QByteArray httpAnswer(int status, const QByteArray& body, const QByteArray& headers = {});

}  // namespace dunmora::test
