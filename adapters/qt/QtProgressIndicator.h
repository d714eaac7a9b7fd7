#pragma once

#include "adapters/qt/Redraw.h"
#include "platform/ProgressIndicator.h"

#include <atomic>

class QProgressBar;

namespace dunmora {

/// A progress bar of an interface, which is drawn as one that waits only once it is told to.
class QtProgressIndicator final : public ProgressIndicator {
public:
    /// The widget must outlive it.
    explicit QtProgressIndicator(QProgressBar& widget);

    void setMinValue(double value) override { least_.store(value, std::memory_order_relaxed); }
    void setMaxValue(double value) override { greatest_.store(value, std::memory_order_relaxed); }
    void setDoubleValue(double value) override { value_.store(value, std::memory_order_relaxed); }
    void startAnimation() override;
    void setHidden(bool hidden) override;
    void setNeedsDisplay() override { redraw_.ask(); }

private:
    void draw();

    QProgressBar& widget_;
    std::atomic<double> least_{0.0};
    std::atomic<double> greatest_{0.0};
    std::atomic<double> value_{0.0};
    Redraw redraw_;
};

}  // namespace dunmora
