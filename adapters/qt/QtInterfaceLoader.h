#pragma once

#include "adapters/qt/QtInterface.h"
#include "platform/InterfaceLoader.h"
#include "platform/WindowMemory.h"

#include <memory>
#include <string>

namespace dunmora {

class ModalSessions;

/// Creates windows from the interface files built into the program.
class QtInterfaceLoader final : public InterfaceLoader {
public:
    /// `sessions` must outlive every interface.
    explicit QtInterfaceLoader(ModalSessions& sessions);
    /// Loads the files from another folder.
    QtInterfaceLoader(ModalSessions& sessions, std::string folder);

    /// Accepts files and folders dropped on any window loaded from now on that has this command,
    /// while the command is usable.
    void setDropHandler(std::string command, QtInterface::DropHandler handler);

    /// Restores from this memory, and stores in it, what the user changes of the windows loaded
    /// from now on.
    void setWindowMemory(std::shared_ptr<WindowMemory> memory);

    std::unique_ptr<Interface> load(std::string_view name) override;

    /// Returns the same interface as `load`, with the functions beyond the port.
    std::unique_ptr<QtInterface> loadInterface(std::string_view name) const;

private:
    ModalSessions& sessions_;
    std::string folder_;
    std::string dropCommand_;
    QtInterface::DropHandler dropHandler_;
    std::shared_ptr<WindowMemory> memory_;
};

}  // namespace dunmora
