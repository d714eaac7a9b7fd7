#pragma once

namespace dunmora {

/// Part of a window: a control, or an area that contains controls.
///
/// Thread: the main thread. Errors: none.
class View {
public:
    virtual ~View() = default;

    /// Removes the view from the window's layout, or puts it back.
    virtual void setHidden(bool hidden) = 0;
};

}  // namespace dunmora
