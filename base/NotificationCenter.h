#pragma once

#include "base/JobNotifications.h"

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace dunmora {

/// What a notification carries: nothing, a text, or how far a job is. A handler that copies it
/// shares its ownership; a payload that nobody holds any more is freed.
using Payload =
    std::variant<std::monostate, std::shared_ptr<const std::string>, std::shared_ptr<Progress>>;

/// A notification while it is delivered; the references end with the handler's call.
struct Notification {
    std::string_view name;
    const void* object;
    const Payload& userInfo;

    /// The payload's text; empty when the payload is no text.
    std::string_view text() const;
    /// The payload's numbers as they are now; zeros when the payload is no progress.
    Progress progress() const;
};

/// Carries notifications from those who post to those who observe, without either knowing the
/// other. Delivery is synchronous: every handler has run, on the posting thread, in the order of
/// registration, before the post returns; what a handler throws leaves the post.
///
/// Thread: any, several at once; handlers may add and remove observers.
class NotificationCenter final {
public:
    using Handler = std::function<void(const Notification&)>;

    NotificationCenter() = default;
    ~NotificationCenter() = default;
    NotificationCenter(const NotificationCenter&) = delete;
    NotificationCenter& operator=(const NotificationCenter&) = delete;

    /// The center of this process. It is made on first use and never destroyed.
    static NotificationCenter& defaultCenter();

    /// Calls `handler` for every post of `name`, whoever posts it, until the observer is removed.
    void addObserver(const void* observer, std::string_view name, Handler handler);

    /// Ends all observing of `name` by `observer`, from the next post on. A delivery under way on
    /// another thread may still reach it.
    void removeObserver(const void* observer, std::string_view name);

    void postNotification(std::string_view name, const void* object, const Payload& userInfo = {});

    /// Posts with a text of its own as the payload.
    void postText(std::string_view name, const void* object, std::string_view text);

private:
    struct Observer {
        const void* observer;
        Handler handler;
    };
    using Observers = std::vector<Observer>;
    struct Subscription {
        std::string name;
        // Replaced, never changed: a delivery goes on with the list it began with.
        std::shared_ptr<const Observers> observers;
    };

    std::shared_ptr<const Observers> observersOf(std::string_view name) const;
    Subscription& subscriptionFor(std::string_view name);

    mutable std::mutex mutex_;
    std::vector<Subscription> subscriptions_;
};

}  // namespace dunmora
