#include "tests/fakes/NotificationRecorder.h"

#include "base/NotificationCenter.h"

#include <algorithm>
#include <array>
#include <utility>

namespace dunmora::test {

namespace {

constexpr std::array kNames = {kMsgShowMessage, kMsgProgress, kMsgFinished, kMsgReload};

}  // namespace

NotificationRecorder::NotificationRecorder()
{
    for (const auto name : kNames) {
        NotificationCenter::defaultCenter().addObserver(
            this, name, [this](const Notification& notification) { write(notification); });
    }
}

NotificationRecorder::~NotificationRecorder()
{
    for (const auto name : kNames) {
        NotificationCenter::defaultCenter().removeObserver(this, name);
    }
}

std::size_t NotificationRecorder::count(std::string_view prefix) const
{
    return static_cast<std::size_t>(
        std::count_if(lines_.begin(), lines_.end(),
                      [&](const std::string& line) { return line.starts_with(prefix); }));
}

void NotificationRecorder::write(const Notification& notification)
{
    std::string line(notification.name);
    if (notification.name == kMsgProgress) {
        const auto progress = notification.progress();
        line += " " + std::to_string(progress.current) + "/" + std::to_string(progress.total);
    } else if (!notification.text().empty()) {
        line += " " + std::string(notification.text());
    }
    lines_.push_back(std::move(line));
    senders_.push_back(notification.object);
}

}  // namespace dunmora::test
