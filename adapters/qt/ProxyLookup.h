#pragma once

#include <functional>
#include <memory>

class QNetworkProxy;
class QSocketNotifier;
class QUrl;

namespace dunmora {

/// Looks up the proxy that the user's settings name for an address. The settings may point to a
/// file on a server, which the system then fetches; a server that does not respond would block the
/// caller. The lookup therefore runs on its own thread, which keeps running if the lookup is
/// destroyed first.
///
/// Thread: the main thread.
class ProxyLookup final {
public:
    using Handler = std::function<void(const QNetworkProxy& proxy)>;

    /// Starts the lookup. `onFound` is called once from the event loop, and never after the lookup
    /// is destroyed; it may destroy the lookup.
    /// Errors: std::system_error when the system provides no thread or no pipe.
    ProxyLookup(const QUrl& url, Handler onFound);
    ~ProxyLookup();
    ProxyLookup(const ProxyLookup&) = delete;
    ProxyLookup& operator=(const ProxyLookup&) = delete;

private:
    struct Result;

    std::shared_ptr<Result> result_;
    // Watches a pipe that the result keeps open.
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace dunmora
