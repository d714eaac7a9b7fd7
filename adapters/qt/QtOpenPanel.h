#pragma once

#include "platform/OpenPanel.h"

namespace dunmora {

class ModalSessions;

/// Lets the user choose in Qt's own file dialog. The one for files has an additional button for
/// folders.
class QtOpenPanel final : public OpenPanel {
public:
    /// `sessions` must outlive the panel.
    explicit QtOpenPanel(ModalSessions& sessions) : sessions_(sessions) {}

    std::optional<std::filesystem::path> runModal(Kind kind,
                                                  const std::filesystem::path& folder) override;

private:
    ModalSessions& sessions_;
    // Where the next panel starts if it is not told.
    std::filesystem::path lastFolder_;
};

}  // namespace dunmora
