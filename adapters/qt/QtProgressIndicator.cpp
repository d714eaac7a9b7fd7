#include "adapters/qt/QtProgressIndicator.h"

#include <QProgressBar>

#include <algorithm>
#include <cmath>

namespace dunmora {

namespace {

// The widget counts in ints and takes an empty range for "nobody knows how long", so it always gets
// the same range, fine enough for the widest screen.
constexpr int kSteps = 10000;

int stepsOf(double least, double greatest, double value)
{
    if (value > least && value >= greatest) {
        return kSteps;
    }
    const double part = (value - least) / (greatest - least);
    return std::isfinite(part) ? static_cast<int>(std::clamp(part, 0.0, 1.0) * kSteps) : 0;
}

}  // namespace

QtProgressIndicator::QtProgressIndicator(QProgressBar& widget)
    : widget_(widget), redraw_([this] { draw(); })
{
    widget_.setRange(0, kSteps);
    widget_.setValue(0);
}

void QtProgressIndicator::startAnimation()
{
    widget_.setRange(0, 0);
}

void QtProgressIndicator::setHidden(bool hidden)
{
    widget_.setHidden(hidden);
}

void QtProgressIndicator::draw()
{
    widget_.setValue(stepsOf(least_.load(std::memory_order_relaxed),
                             greatest_.load(std::memory_order_relaxed),
                             value_.load(std::memory_order_relaxed)));
}

}  // namespace dunmora
