#pragma once

#include "platform/InterfaceLoader.h"

#include <memory>
#include <string>
#include <string_view>

namespace dunmora {

/// Owns a window that comes from an interface file and stands between it and the program.
///
/// Thread: the main thread; its end may come on any. Errors: none.
class WindowController {
public:
    virtual ~WindowController() = default;
    WindowController(const WindowController&) = delete;
    WindowController& operator=(const WindowController&) = delete;

    /// The window, loaded on first use; none when its interface file cannot be loaded.
    Window* window();

    /// Puts the window on the screen; without one it does nothing. The sender is not looked at.
    void showWindow(const void* sender);

    /// Takes the window off the screen; one that was never loaded is not loaded for that.
    void close();

protected:
    explicit WindowController(std::string_view interfaceName) : interfaceName_(interfaceName) {}

    /// Called once, when the window has been loaded: the place to find the outlets and to connect
    /// the commands.
    virtual void windowDidLoad(Interface& interface) = 0;

private:
    std::string interfaceName_;
    std::unique_ptr<Interface> interface_;
};

}  // namespace dunmora
