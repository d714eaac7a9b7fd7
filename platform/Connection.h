#pragma once

#include <memory>
#include <string>
#include <string_view>

namespace dunmora {

/// One HTTP GET under way, or just finished. It goes on until it has finished, has failed or is
/// cancelled, whoever holds it.
///
/// Thread: the main thread. Errors: none.
class Connection {
public:
    virtual ~Connection() = default;

    /// Ends the transfer; its delegate hears nothing more. A finished one stays as it is.
    virtual void cancel() = 0;
};

/// Who hears how a transfer goes. Its calls come from the main thread's event loop, never from
/// within `openConnection`.
///
/// Thread: the main thread. Errors: none.
class ConnectionDelegate {
public:
    virtual ~ConnectionDelegate() = default;

    /// A response's head has come, whatever its status.
    virtual void didReceiveResponse(const Connection& connection) = 0;

    /// More of the body; the bytes end with the call.
    virtual void didReceiveData(const Connection& connection, std::string_view bytes) = 0;

    /// The service sends elsewhere; returns the address to go on with.
    virtual std::string willSendRequest(const Connection& connection, const std::string& url) = 0;

    /// The last call of a transfer that failed; the description is a text for the user, UTF-8.
    virtual void didFailWithError(const Connection& connection, const std::string& description) = 0;

    /// The last call of a transfer whose body has come whole.
    virtual void connectionDidFinishLoading(const Connection& connection) = 0;
};

/// Opens connections.
class ConnectionOpener {
public:
    virtual ~ConnectionOpener() = default;

    /// Starts a plain GET with the platform's usual time-out; none when it cannot be started. The
    /// delegate must outlive the transfer, or cancel it.
    /// Thread: the main thread; does not wait. Errors: none.
    virtual std::shared_ptr<Connection> openConnection(const std::string& url,
                                                       ConnectionDelegate& delegate) = 0;
};

}  // namespace dunmora
