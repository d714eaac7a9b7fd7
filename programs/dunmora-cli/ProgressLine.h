#pragma once

#include <cstddef>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>

namespace dunmora {

struct Progress;

/// Shows the running job's message and progress on one line of a terminal, which it clears at the
/// end. Observes the job notifications as long as it lives.
/// Thread: one job at a time.
class ProgressLine final {
public:
    /// `width` is the number of the terminal's columns.
    ProgressLine(std::ostream& err, std::size_t width);
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;
    ~ProgressLine();

private:
    void showMessage(std::string_view text);
    void showProgress(const Progress& progress);
    void draw(const std::string& line);
    void clear();

    std::ostream& err_;
    std::size_t width_;
    std::string message_;
    std::int64_t drawnPercent_ = -1;
    std::size_t drawnWidth_ = 0;
};

}  // namespace dunmora
