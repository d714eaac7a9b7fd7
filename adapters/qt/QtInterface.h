#pragma once

#include "platform/InterfaceLoader.h"

#include <filesystem>
#include <functional>
#include <memory>

class QWidget;

namespace dunmora {

class ModalSessions;

/// A window made from an interface file, with its outlets and commands.
///
/// An outlet is a widget with the outlet's name. A command is an action with the command's name, or
/// a button or a check box whose dynamic property `command` names it; all that give one command are
/// enabled and disabled together. While a modal session runs for another window, commands do
/// nothing but for the actions, and all of a window, with the dynamic property `alwaysUsable`. The
/// dynamic property `closeCommand` of the window names the command of its close control and of
/// Escape. A label whose dynamic property `blankedBy` names a view is blank from the moment that
/// the program shows the view until the label gets its next text.
class QtInterface final : public Interface {
public:
    /// Called with a file or a folder that the user has dropped on the window.
    using DropHandler = std::function<void(std::filesystem::path)>;

    /// Takes a window in which the other conventions have been carried out. The sessions must
    /// outlive it.
    QtInterface(std::unique_ptr<QWidget> window, ModalSessions& sessions);
    ~QtInterface() override;
    QtInterface(const QtInterface&) = delete;
    QtInterface& operator=(const QtInterface&) = delete;

    Window& window() override;
    View& view(std::string_view outlet) override;
    Button& button(std::string_view outlet) override;
    CheckBox& checkBox(std::string_view outlet) override;
    TextField& textField(std::string_view outlet) override;
    ProgressIndicator& progressIndicator(std::string_view outlet) override;
    TableView& tableView(std::string_view outlet) override;
    Command& command(std::string_view name) override;

    bool hasCommand(std::string_view name) const;

    /// Lets the user drop a file or a folder on the window wherever this command could be used.
    void setDropHandler(std::string_view command, DropHandler handler);

private:
    class Content;

    // Lives on the main thread, where it ends some time after this.
    Content* content_;
};

}  // namespace dunmora
