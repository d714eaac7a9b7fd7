#pragma once

#include <string>
#include <thread>
#include <vector>

namespace dunmora {

class Application;

/// Shows in message boxes that preferences cannot be read or stored. While the program starts, when
/// it has no windows yet, it keeps the messages.
class PreferencesFailures final {
public:
    /// `application` runs threads that are no jobs. Thread: the main thread.
    explicit PreferencesFailures(Application& application)
        : application_(application), mainThread_(std::this_thread::get_id())
    {
    }

    /// Shows the message. Before `showAtLaunch`, only keeps it.
    /// Thread: any. Returns at once on the main thread, where the caller may be handling a click;
    /// blocks another one until the user responds. Errors: none.
    void report(const std::string& message);

    /// Shows the messages so far, and waits for the user to respond.
    /// Thread: the main thread, after the platform has been installed and before any job runs.
    void showAtLaunch();

private:
    Application& application_;
    std::thread::id mainThread_;
    // Both change before any other thread uses them.
    bool isLaunched_ = false;
    std::vector<std::string> kept_;
};

}  // namespace dunmora
