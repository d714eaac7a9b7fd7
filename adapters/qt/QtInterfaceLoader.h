#pragma once

#include "platform/InterfaceLoader.h"

#include <string>

namespace dunmora {

class ModalSessions;
class QtInterface;

/// Makes windows from the interface files that are built into the program.
class QtInterfaceLoader final : public InterfaceLoader {
public:
    /// The sessions must outlive every interface.
    explicit QtInterfaceLoader(ModalSessions& sessions);
    /// Reads the files of another folder.
    QtInterfaceLoader(ModalSessions& sessions, std::string folder);

    std::unique_ptr<Interface> load(std::string_view name) override;

    /// The same for who wants to do more with it than the core does.
    std::unique_ptr<QtInterface> loadInterface(std::string_view name) const;

private:
    ModalSessions& sessions_;
    std::string folder_;
};

}  // namespace dunmora
