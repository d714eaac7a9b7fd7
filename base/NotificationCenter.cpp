#include "base/NotificationCenter.h"

#include <algorithm>
#include <utility>

namespace dunmora {

std::string_view Notification::text() const
{
    const auto* text = std::get_if<std::shared_ptr<const std::string>>(&userInfo);
    return text != nullptr && *text ? std::string_view(**text) : std::string_view();
}

Progress Notification::progress() const
{
    const auto* progress = std::get_if<std::shared_ptr<Progress>>(&userInfo);
    return progress != nullptr && *progress ? **progress : Progress();
}

NotificationCenter& NotificationCenter::defaultCenter()
{
    // Never destroyed: a job that is still running when the process exits may post to it.
    static auto& center = *new NotificationCenter;
    return center;
}

void NotificationCenter::addObserver(const void* observer, std::string_view name, Handler handler)
{
    const std::lock_guard guard(mutex_);
    auto& subscription = subscriptionFor(name);
    Observers observers = *subscription.observers;
    observers.push_back({observer, std::move(handler)});
    subscription.observers = std::make_shared<const Observers>(std::move(observers));
}

void NotificationCenter::removeObserver(const void* observer, std::string_view name)
{
    const std::lock_guard guard(mutex_);
    auto& subscription = subscriptionFor(name);
    Observers observers = *subscription.observers;
    std::erase_if(observers, [&](const Observer& each) { return each.observer == observer; });
    subscription.observers = std::make_shared<const Observers>(std::move(observers));
}

void NotificationCenter::postNotification(std::string_view name, const void* object,
                                          const Payload& userInfo)
{
    // Handlers run without the lock: they open dialogs, start jobs and change subscriptions.
    const auto observers = observersOf(name);
    if (!observers) {
        return;
    }
    const Notification notification{name, object, userInfo};
    for (const auto& each : *observers) {
        each.handler(notification);
    }
}

void NotificationCenter::postText(std::string_view name, const void* object, std::string_view text)
{
    postNotification(name, object, std::make_shared<const std::string>(text));
}

std::shared_ptr<const NotificationCenter::Observers>
NotificationCenter::observersOf(std::string_view name) const
{
    const std::lock_guard guard(mutex_);
    const auto found =
        std::find_if(subscriptions_.begin(), subscriptions_.end(),
                     [&](const Subscription& subscription) { return subscription.name == name; });
    return found == subscriptions_.end() ? nullptr : found->observers;
}

NotificationCenter::Subscription& NotificationCenter::subscriptionFor(std::string_view name)
{
    const auto found =
        std::find_if(subscriptions_.begin(), subscriptions_.end(),
                     [&](const Subscription& subscription) { return subscription.name == name; });
    if (found != subscriptions_.end()) {
        return *found;
    }
    return subscriptions_.emplace_back(
        Subscription{std::string(name), std::make_shared<const Observers>()});
}

}  // namespace dunmora
