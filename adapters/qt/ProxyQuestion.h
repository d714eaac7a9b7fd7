#pragma once

#include <functional>
#include <memory>

class QNetworkProxy;
class QSocketNotifier;
class QUrl;

namespace dunmora {

/// Asks which proxy the user's settings want for an address. They may name a file on a server,
/// which is then fetched there and then; a server that keeps silent holds up whoever asks. So a
/// thread of its own asks, which is left behind when the question ends before it is answered.
///
/// Thread: the main thread.
class ProxyQuestion final {
public:
    using Answered = std::function<void(const QNetworkProxy& proxy)>;

    /// The answer comes from the event loop, once, and not after the question's end.
    /// Errors: std::system_error when the system gives no thread or no pipe.
    ProxyQuestion(const QUrl& url, Answered answered);
    ~ProxyQuestion();
    ProxyQuestion(const ProxyQuestion&) = delete;
    ProxyQuestion& operator=(const ProxyQuestion&) = delete;

private:
    struct Answer;

    std::shared_ptr<Answer> answer_;
    // Looks at what the answer holds open.
    std::unique_ptr<QSocketNotifier> notifier_;
};

}  // namespace dunmora
