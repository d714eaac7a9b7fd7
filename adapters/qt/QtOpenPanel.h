#pragma once

#include "platform/OpenPanel.h"

namespace dunmora {

class ModalSessions;

/// Lets the user choose in Qt's own file dialog, with an additional button for folders.
class QtOpenPanel final : public OpenPanel {
public:
    /// `sessions` must outlive the panel.
    explicit QtOpenPanel(ModalSessions& sessions) : sessions_(sessions) {}

    std::optional<std::filesystem::path> runModal() override;

private:
    ModalSessions& sessions_;
    // The folder that the next panel shows first.
    std::filesystem::path folder_;
};

}  // namespace dunmora
