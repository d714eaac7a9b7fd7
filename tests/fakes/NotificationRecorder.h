#pragma once

#include "base/NotificationCenter.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace dunmora::test {

/// Writes down every job notification of the default center as long as it lives, one line each:
/// `msgShowMessage Loading Contacts...`, `msgProgress 0/3`, `msgFinished loading`, `msgReload`.
class NotificationRecorder final {
public:
    NotificationRecorder()
    {
        for (const auto name : kNames) {
            NotificationCenter::defaultCenter().addObserver(
                this, name, [this](const Notification& notification) { write(notification); });
        }
    }
    ~NotificationRecorder()
    {
        for (const auto name : kNames) {
            NotificationCenter::defaultCenter().removeObserver(this, name);
        }
    }
    NotificationRecorder(const NotificationRecorder&) = delete;
    NotificationRecorder& operator=(const NotificationRecorder&) = delete;

    const std::vector<std::string>& lines() const { return lines_; }
    /// Who sent each of the lines.
    const std::vector<const void*>& senders() const { return senders_; }

    std::size_t count(std::string_view beginning) const
    {
        return static_cast<std::size_t>(
            std::count_if(lines_.begin(), lines_.end(),
                          [&](const std::string& line) { return line.starts_with(beginning); }));
    }

private:
    static constexpr std::array kNames = {kMsgShowMessage, kMsgProgress, kMsgFinished, kMsgReload};

    void write(const Notification& notification)
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

    std::vector<std::string> lines_;
    std::vector<const void*> senders_;
};

}  // namespace dunmora::test
