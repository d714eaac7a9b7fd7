#include "adapters/qt/QtProgressIndicator.h"

#include <QProgressBar>

#include <algorithm>
#include <cmath>

namespace dunmora {

namespace {

// QProgressBar counts in ints and shows an empty range as busy, so it always gets the same range,
// fine enough for the widest screen.
constexpr int kSteps = 10000;

int stepsOf(double minimum, double maximum, double value)
{
    if (value > minimum && value >= maximum) {
        return kSteps;
    }
    const double fraction = (value - minimum) / (maximum - minimum);
    return std::isfinite(fraction) ? static_cast<int>(std::clamp(fraction, 0.0, 1.0) * kSteps) : 0;
}

}  // namespace

QtProgressIndicator::QtProgressIndicator(QProgressBar& widget)
    : widget_(widget), redraw_([this] { draw(); })
{
    showNothing();
}

void QtProgressIndicator::startAnimation()
{
    widget_.setRange(0, 0);
}

void QtProgressIndicator::stopAnimation()
{
    if (widget_.maximum() == 0) {
        showNothing();
    }
}

void QtProgressIndicator::setHidden(bool hidden)
{
    widget_.setHidden(hidden);
}

void QtProgressIndicator::showNothing()
{
    widget_.setRange(0, kSteps);
    widget_.setValue(0);
}

void QtProgressIndicator::draw()
{
    widget_.setValue(stepsOf(minimum_.load(std::memory_order_relaxed),
                             maximum_.load(std::memory_order_relaxed),
                             value_.load(std::memory_order_relaxed)));
}

}  // namespace dunmora
