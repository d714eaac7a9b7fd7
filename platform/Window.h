#pragma once

#include <string>

namespace dunmora {

/// The stacking level of a window.
enum class WindowLevel {
    /// An ordinary window.
    Normal,
    /// Above ordinary windows.
    Floating,
    /// Above floating windows: a message that is unrelated to the current job.
    Status,
};

/// Whether a window that is shown takes the keyboard focus.
enum class KeyboardFocus {
    /// The user asked for the window.
    Take,
    /// The window appears by itself: the next key press is meant for the focused window.
    Leave,
};

/// Is notified before a window closes.
///
/// Thread: the main thread. Errors: none.
class WindowDelegate {
public:
    virtual ~WindowDelegate() = default;

    /// The window is about to close, at the request of the user or the program.
    virtual void windowWillClose() = 0;
};

/// A window on the screen.
///
/// Thread: the main thread. Errors: none.
class Window {
public:
    virtual ~Window() = default;

    /// Sets the title, plain UTF-8.
    virtual void setTitle(const std::string& title) = 0;
    virtual void setLevel(WindowLevel level) = 0;

    /// `delegate` may be null; it must stay alive until it is replaced or the window is destroyed.
    virtual void setDelegate(WindowDelegate* delegate) = 0;

    /// Shows the window in front of the others at its level. A floating window never takes the
    /// keyboard focus.
    virtual void show(KeyboardFocus focus) = 0;
    void show() { show(KeyboardFocus::Take); }

    /// Closes the window, notifying its delegate first.
    virtual void close() = 0;
};

}  // namespace dunmora
