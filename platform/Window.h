#pragma once

#include <string>

namespace dunmora {

/// Where a window stands among the others.
enum class WindowLevel {
    /// Among the application's ordinary windows.
    Normal,
    /// Above the ordinary ones.
    Floating,
    /// Above those, too: a message that is not about the work in hand.
    Status,
};

/// Who hears of a window's end.
///
/// Thread: the main thread. Errors: none.
class WindowDelegate {
public:
    virtual ~WindowDelegate() = default;

    /// The window is about to close, whoever asked for it.
    virtual void windowWillClose() = 0;
};

/// A window on the screen.
///
/// Thread: the main thread. Errors: none.
class Window {
public:
    virtual ~Window() = default;

    virtual void setTitle(const std::string& title) = 0;
    virtual void setLevel(WindowLevel level) = 0;

    /// The delegate must outlive the window, or the last call of this; none is none.
    virtual void setDelegate(WindowDelegate* delegate) = 0;

    /// Puts it on the screen, in front of its level. A floating window does not take the keyboard;
    /// a status window takes it from the main window only, not from a dialog or another program.
    virtual void show() = 0;

    /// Takes it off the screen; its delegate hears of it before.
    virtual void close() = 0;
};

}  // namespace dunmora
