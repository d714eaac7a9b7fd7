#pragma once

#include "platform/InterfaceLoader.h"
#include "platform/WindowMemory.h"

#include <filesystem>
#include <functional>
#include <memory>
#include <string_view>
#include <vector>

class QWidget;

namespace dunmora {

class ModalSessions;

/// A window created from an interface file, with its outlets and commands.
///
/// An outlet is a widget with the outlet's name. A command is an action with the command's name, or
/// a button or check box whose dynamic property `command` names it; all controls of one command are
/// enabled and disabled together. While a modal session runs for another window, commands do
/// nothing, except for actions and windows with the dynamic property `alwaysUsable`. The window's
/// dynamic property `closeCommand` names the command of its close control and of Escape. A
/// message whose dynamic property `blankedBy` names a view is cleared when the program shows that
/// view, and stays blank until its next text. A window, splitter, table or checkable action with
/// the dynamic property `remembered` is restored and remembered by `remember`.
class QtInterface final : public Interface {
public:
    /// Called with the files and folders, at least one, that the user dropped on the window
    /// together.
    using DropHandler = std::function<void(const std::vector<std::filesystem::path>&)>;

    /// `window` has had `applyConventions` applied; `sessions` must outlive the interface.
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
    DetailsView& detailsView(std::string_view outlet) override;
    Menu& menu(std::string_view outlet) override;
    Command& command(std::string_view name) override;
    std::vector<Shortcut> shortcuts() const override;

    bool hasCommand(std::string_view name) const;

    /// Accepts files and folders dropped on the window while this command is usable.
    void setDropHandler(std::string_view command, DropHandler handler);

    /// Restores what the user changed of the window and its parts in earlier runs, and stores the
    /// changes from now on (see `RememberedWindow`); of a table, the widths of its columns. Does
    /// nothing unless the window is to be remembered. Call it before the window is shown.
    void remember(const std::shared_ptr<WindowMemory>& memory);

private:
    class Content;

    // Lives on the main thread, where it is deleted after this object.
    Content* content_;
};

}  // namespace dunmora
