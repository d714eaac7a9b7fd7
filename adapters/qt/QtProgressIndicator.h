#pragma once

#include "adapters/qt/Redraw.h"
#include "platform/ProgressIndicator.h"

#include <atomic>

class QProgressBar;

namespace dunmora {

/// A progress bar of an interface. It shows values, except between `startAnimation` and
/// `stopAnimation`.
class QtProgressIndicator final : public ProgressIndicator {
public:
    /// `widget` must outlive the indicator.
    explicit QtProgressIndicator(QProgressBar& widget);

    void setMinValue(double value) override { minimum_.store(value, std::memory_order_relaxed); }
    void setMaxValue(double value) override { maximum_.store(value, std::memory_order_relaxed); }
    void setDoubleValue(double value) override { value_.store(value, std::memory_order_relaxed); }
    void startAnimation() override;
    void stopAnimation() override;
    void setHidden(bool hidden) override;
    void setNeedsDisplay() override { redraw_.request(); }

private:
    void showNothing();
    void draw();

    QProgressBar& widget_;
    std::atomic<double> minimum_{0.0};
    std::atomic<double> maximum_{0.0};
    std::atomic<double> value_{0.0};
    Redraw redraw_;
};

}  // namespace dunmora
