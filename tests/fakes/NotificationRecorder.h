#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {
struct Notification;
}

namespace dunmora::test {

/// Records every job notification of the default center during its lifetime, one line each:
/// `msgShowMessage Loading Contacts...`, `msgProgress 0/3`, `msgFinished loading`, `msgReload`.
class NotificationRecorder final {
public:
    NotificationRecorder();
    ~NotificationRecorder();
    NotificationRecorder(const NotificationRecorder&) = delete;
    NotificationRecorder& operator=(const NotificationRecorder&) = delete;

    const std::vector<std::string>& lines() const { return lines_; }
    /// The sender of each line's notification.
    const std::vector<const void*>& senders() const { return senders_; }

    /// Returns the number of lines that start with `prefix`.
    std::size_t count(std::string_view prefix) const;

private:
    void write(const Notification& notification);

    std::vector<std::string> lines_;
    std::vector<const void*> senders_;
};

}  // namespace dunmora::test
