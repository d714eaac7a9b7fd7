#pragma once

#include <memory>

namespace dunmora {

class ProgressWindowController;

/// State shared by the whole application: the progress window of the current job, which one
/// controller opens and another closes.
///
/// Thread: the main thread.
class AppData final {
public:
    AppData(const AppData&) = delete;
    AppData& operator=(const AppData&) = delete;

    /// The only instance, created on first use and never destroyed.
    static AppData& app();

    /// The progress window of the current job; null between jobs.
    const std::shared_ptr<ProgressWindowController>& progress() const { return progress_; }

    /// Replaces the progress window, which may be null, without closing the old one.
    void setProgress(std::shared_ptr<ProgressWindowController> progress);

private:
    AppData() = default;
    ~AppData() = default;

    std::shared_ptr<ProgressWindowController> progress_;
};

}  // namespace dunmora
