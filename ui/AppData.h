#pragma once

#include <memory>

namespace dunmora {

class ProgressWindowController;

/// What the whole application shares: the progress window of the job in hand, so that whoever
/// opens it and whoever closes it need not know each other.
///
/// Thread: the main thread.
class AppData final {
public:
    AppData(const AppData&) = delete;
    AppData& operator=(const AppData&) = delete;

    /// The one instance, made on first use and never destroyed.
    static AppData& app();

    /// The progress window of the job in hand; none between jobs.
    const std::shared_ptr<ProgressWindowController>& progress() const { return progress_; }

    /// Keeps the new window and lets go of the old one, which is not closed by that.
    void setProgress(std::shared_ptr<ProgressWindowController> progress);

private:
    AppData() = default;
    ~AppData() = default;

    std::shared_ptr<ProgressWindowController> progress_;
};

}  // namespace dunmora
