#pragma once

#include <functional>
#include <memory>
#include <string_view>

namespace dunmora {

class Button;
class CheckBox;
class ProgressIndicator;
class TableView;
class TextField;
class View;
class Window;

/// Something the user can tell the program to do, under the name of the operation that does it,
/// such as "OnReload". One command may be a button, a menu entry and a shortcut at once.
///
/// Thread: the main thread. Errors: none.
class Command {
public:
    /// Gets the control that was used; none for a menu entry or a shortcut.
    using Handler = std::function<void(View* sender)>;

    virtual ~Command() = default;

    /// Replaces the handler.
    virtual void setHandler(Handler handler) = 0;

    /// Whether the user can use it; without a handler nobody can.
    virtual void setEnabled(bool enabled) = 0;
};

/// What an interface file holds: a window, outlets under the names of the controllers' fields, and
/// commands. It owns them all; its end takes the window off the screen.
///
/// Thread: the main thread; its end may come on any. Errors: std::logic_error for a name that the
/// file does not hold, which is a defect of the program.
class Interface {
public:
    virtual ~Interface() = default;

    virtual Window& window() = 0;
    virtual View& view(std::string_view outlet) = 0;
    virtual Button& button(std::string_view outlet) = 0;
    virtual CheckBox& checkBox(std::string_view outlet) = 0;
    virtual TextField& textField(std::string_view outlet) = 0;
    virtual ProgressIndicator& progressIndicator(std::string_view outlet) = 0;
    virtual TableView& tableView(std::string_view outlet) = 0;
    virtual Command& command(std::string_view name) = 0;
};

/// Makes interfaces from their files.
class InterfaceLoader {
public:
    virtual ~InterfaceLoader() = default;

    /// A new interface of this name, such as "FilterWindow", not on the screen yet; none when it
    /// cannot be made.
    /// Thread: the main thread. Errors: none.
    virtual std::unique_ptr<Interface> load(std::string_view name) = 0;
};

}  // namespace dunmora
