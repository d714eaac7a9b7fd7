#pragma once

#include "platform/SavePanel.h"

namespace dunmora {

class ModalSessions;

/// Lets the user choose in Qt's own file dialog. Never replaces a file.
class QtSavePanel final : public SavePanel {
public:
    /// `sessions` must outlive the panel.
    explicit QtSavePanel(ModalSessions& sessions) : sessions_(sessions) {}

    std::optional<std::filesystem::path> runModal(const std::string& name,
                                                  const std::filesystem::path& folder) override;

private:
    ModalSessions& sessions_;
    // Where the next panel starts if it is not told.
    std::filesystem::path lastFolder_;
};

}  // namespace dunmora
