#pragma once

#include "platform/OpenPanel.h"

namespace dunmora {

class ModalSessions;

/// Lets the user choose in Qt's own file dialog, with one more button that takes a folder.
class QtOpenPanel final : public OpenPanel {
public:
    /// The sessions must outlive it.
    explicit QtOpenPanel(ModalSessions& sessions) : sessions_(sessions) {}

    std::optional<std::filesystem::path> runModal() override;

private:
    ModalSessions& sessions_;
    // Where the next panel begins.
    std::filesystem::path folder_;
};

}  // namespace dunmora
