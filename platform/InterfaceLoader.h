#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace dunmora {

class Button;
class CheckBox;
class DetailsView;
class Menu;
class ProgressIndicator;
class TableView;
class TextField;
class View;
class Window;

/// An operation that the user can invoke, such as "OnReload". One command can be a button, a menu
/// entry and a shortcut at once.
///
/// Thread: the main thread. Errors: none.
class Command {
public:
    /// `sender` is the control that was used; null for a menu entry or a shortcut.
    using Handler = std::function<void(View* sender)>;

    virtual ~Command() = default;

    /// Replaces the handler.
    virtual void setHandler(Handler handler) = 0;

    /// Enables or disables the command; without a handler it is always disabled.
    virtual void setEnabled(bool enabled) = 0;

    /// Hides or shows the command's controls. A hidden command is disabled.
    virtual void setHidden(bool hidden) = 0;

    /// Replaces the text of the command's controls, plain UTF-8. The letter that chooses the
    /// command in a menu stays the same while the title contains it.
    virtual void setTitle(const std::string& title) = 0;

    /// Sets the check mark of a command that its interface makes checkable, without running it.
    /// Using the command changes no check mark; the handler does.
    virtual void setChecked(bool checked) = 0;
};

/// Keys of an interface and what they do, as plain UTF-8.
struct Shortcut {
    /// The menu or the part of the window that the keys belong to.
    std::string group;
    /// The title that the interface file gives the command, or what the keys do.
    std::string title;
    /// As the platform writes them: "Ctrl+R, F5".
    std::string keys;

    bool operator==(const Shortcut&) const = default;
};

/// The contents of an interface file: a window, outlets with the names of the controllers' fields,
/// and commands. It owns them all; destroying it closes the window.
///
/// Thread: the main thread; may be destroyed on any. Errors: std::logic_error for a name that is
/// not in the file, which is a bug in the program.
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
    virtual DetailsView& detailsView(std::string_view outlet) = 0;
    virtual Menu& menu(std::string_view outlet) = 0;
    virtual Command& command(std::string_view name) = 0;

    /// The shortcuts of the menus' commands, in the menus' order, and then the keys that the parts
    /// of the window handle themselves. Those of a group follow each other.
    virtual std::vector<Shortcut> shortcuts() const = 0;
};

/// Creates interfaces from their files.
class InterfaceLoader {
public:
    virtual ~InterfaceLoader() = default;

    /// Creates the interface with this name, such as "FilterWindow", with its window still hidden.
    /// Returns null when the file is missing or invalid.
    /// Thread: the main thread. Errors: none.
    virtual std::unique_ptr<Interface> load(std::string_view name) = 0;
};

}  // namespace dunmora
