#pragma once

#include "platform/InterfaceLoader.h"
#include "platform/Window.h"

#include <memory>
#include <string>
#include <string_view>

namespace dunmora {

/// Owns a window that is loaded from an interface file, and connects it to the program.
///
/// Thread: the main thread; the destructor may run on any. Errors: none.
class WindowController {
public:
    virtual ~WindowController() = default;
    WindowController(const WindowController&) = delete;
    WindowController& operator=(const WindowController&) = delete;

    /// The window, loaded on first use; null when its interface file cannot be loaded.
    Window* window();

    /// Shows the window; does nothing when it cannot be loaded. The sender is ignored.
    void showWindow(const void* sender, KeyboardFocus focus = KeyboardFocus::Take);

    /// Closes the window if it was ever loaded.
    void close();

protected:
    explicit WindowController(std::string_view interfaceName) : interfaceName_(interfaceName) {}

    /// Called once, after the window has been loaded. Finds the outlets and connects the commands.
    virtual void windowDidLoad(Interface& interface) = 0;

private:
    std::string interfaceName_;
    std::unique_ptr<Interface> interface_;
};

}  // namespace dunmora
