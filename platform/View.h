#pragma once

namespace dunmora {

/// Something in a window: a control, or an area that holds some.
///
/// Thread: the main thread, but for `setNeedsDisplay`. Errors: none.
class View {
public:
    virtual ~View() = default;

    /// Takes it out of the window's layout, or puts it back.
    virtual void setHidden(bool hidden) = 0;

    /// Asks for one redraw with the values set so far; many asks before it happens make one.
    /// Thread: any; never waits for the main thread.
    virtual void setNeedsDisplay() = 0;
};

}  // namespace dunmora
