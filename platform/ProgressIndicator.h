#pragma once

#include "platform/View.h"

namespace dunmora {

/// A progress bar. Its values take effect at the next redraw, which `setNeedsDisplay` requests; a
/// value above the maximum shows a full bar.
///
/// Thread of the setters: any, one at a time. They never wait for the main thread and cost next to
/// nothing, because jobs call them for every item. Errors: none.
class ProgressIndicator : public View {
public:
    virtual void setMinValue(double value) = 0;
    virtual void setMaxValue(double value) = 0;
    virtual void setDoubleValue(double value) = 0;

    /// Requests one redraw with the values set so far; requests that arrive before it happens are
    /// merged.
    /// Thread: any; never waits for the main thread.
    virtual void setNeedsDisplay() = 0;

    /// Switches to the indeterminate (busy) animation, which ignores the values. A second call
    /// changes nothing.
    /// Thread: the main thread.
    virtual void startAnimation() = 0;

    /// Ends the animation and leaves an empty bar, which shows values again. Without an animation,
    /// changes nothing.
    /// Thread: the main thread.
    virtual void stopAnimation() = 0;
};

}  // namespace dunmora
