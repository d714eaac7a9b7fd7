#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace dunmora {

/// One HTTP GET. It runs until it finishes, fails or is cancelled, even if the caller drops it.
///
/// Thread: the main thread. Errors: none.
class Connection {
public:
    virtual ~Connection() = default;

    /// Ends the transfer without any further call to its delegate. Does nothing once it has ended.
    virtual void cancel() = 0;
};

/// Is notified of a transfer's progress, from the main thread's event loop and never from within
/// `openConnection`.
///
/// Thread: the main thread. Errors: none.
class ConnectionDelegate {
public:
    virtual ~ConnectionDelegate() = default;

    /// Called when the head of the final response has arrived, whatever its status.
    virtual void didReceiveResponse(const Connection& connection) = 0;

    /// Called with the next bytes of the body, which are valid only during the call.
    virtual void didReceiveData(const Connection& connection, std::string_view bytes) = 0;

    /// Called for each redirect; returns the URL to request next.
    virtual std::string willSendRequest(const Connection& connection, const std::string& url) = 0;

    /// The last call for a transfer that failed; the description is a message for the user, UTF-8.
    virtual void didFailWithError(const Connection& connection, const std::string& description) = 0;

    /// The last call for a transfer whose body is complete.
    virtual void connectionDidFinishLoading(const Connection& connection) = 0;
};

/// Opens connections.
class ConnectionOpener {
public:
    virtual ~ConnectionOpener() = default;

    /// Starts a GET with the platform's default timeout. Returns null when the URL cannot be
    /// requested. The delegate must stay alive until the transfer ends or is cancelled.
    /// Thread: the main thread; does not block. Errors: none.
    virtual std::shared_ptr<Connection> openConnection(const std::string& url,
                                                       ConnectionDelegate& delegate) = 0;
};

}  // namespace dunmora
