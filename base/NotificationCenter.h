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

/// The payload of a notification: nothing, a text, or a job's progress. A copy shares ownership.
using Payload =
    std::variant<std::monostate, std::shared_ptr<const std::string>, std::shared_ptr<Progress>>;

/// A notification during its delivery. The references are valid until the handler returns.
struct Notification {
    std::string_view name;
    const void* object;
    const Payload& userInfo;

    /// The payload's text; empty when the payload is not a text.
    std::string_view text() const;
    /// The current numbers of the payload; zeros when the payload is not a progress.
    Progress progress() const;
};

/// Delivers notifications to observers that the poster does not know. Delivery is synchronous:
/// every handler has run, on the posting thread, in the order of registration, before the post
/// returns; an exception from a handler propagates to the poster.
///
/// Thread: any, several at once; handlers may add and remove observers.
class NotificationCenter final {
public:
    using Handler = std::function<void(const Notification&)>;

    NotificationCenter() = default;
    ~NotificationCenter() = default;
    NotificationCenter(const NotificationCenter&) = delete;
    NotificationCenter& operator=(const NotificationCenter&) = delete;

    /// The center of this process. It is created on first use and never destroyed.
    static NotificationCenter& defaultCenter();

    /// Calls `handler` for every post of `name`, from any sender, until the observer is removed.
    void addObserver(const void* observer, std::string_view name, Handler handler);

    /// Removes all handlers of `observer` for `name`. A delivery in progress on another thread may
    /// still call them.
    void removeObserver(const void* observer, std::string_view name);

    void postNotification(std::string_view name, const void* object, const Payload& userInfo = {});

    /// Posts a copy of the text as the payload.
    void postText(std::string_view name, const void* object, std::string_view text);

private:
    struct Observer {
        const void* observer;
        Handler handler;
    };
    using Observers = std::vector<Observer>;
    struct Subscription {
        std::string name;
        // Replaced, never changed: a delivery keeps the list it started with.
        std::shared_ptr<const Observers> observers;
    };

    std::shared_ptr<const Observers> observersOf(std::string_view name) const;
    Subscription& subscriptionFor(std::string_view name);

    mutable std::mutex mutex_;
    std::vector<Subscription> subscriptions_;
};

}  // namespace dunmora
