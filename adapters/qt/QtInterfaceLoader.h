#pragma once

#include "adapters/qt/QtInterface.h"
#include "platform/InterfaceLoader.h"

#include <string>

namespace dunmora {

class ModalSessions;

/// Makes windows from the interface files that are built into the program.
class QtInterfaceLoader final : public InterfaceLoader {
public:
    /// The sessions must outlive every interface.
    explicit QtInterfaceLoader(ModalSessions& sessions);
    /// Reads the files of another folder.
    QtInterfaceLoader(ModalSessions& sessions, std::string folder);

    /// Lets the user drop a file or a folder on every window loaded from here on that has this
    /// command, wherever the command could be used.
    void setDropHandler(std::string command, QtInterface::DropHandler handler);

    std::unique_ptr<Interface> load(std::string_view name) override;

    /// The same for who wants to do more with it than the core does.
    std::unique_ptr<QtInterface> loadInterface(std::string_view name) const;

private:
    ModalSessions& sessions_;
    std::string folder_;
    std::string dropCommand_;
    QtInterface::DropHandler dropHandler_;
};

}  // namespace dunmora
