#pragma once

#include "platform/View.h"

namespace dunmora {

/// A bar from a least to a greatest value. The values take effect at the next redraw, which
/// `setNeedsDisplay` asks for; a value beyond the greatest is drawn as a full bar.
///
/// Thread of the setters: any, one at a time; they never wait for the main thread and cost next to
/// nothing, because a job calls them for every item.
class ProgressIndicator : public View {
public:
    virtual void setMinValue(double value) = 0;
    virtual void setMaxValue(double value) = 0;
    virtual void setDoubleValue(double value) = 0;

    /// Shows that something is under way and nobody knows how long, for an indicator that is not
    /// about values. A second call changes nothing.
    /// Thread: the main thread.
    virtual void startAnimation() = 0;
};

}  // namespace dunmora
