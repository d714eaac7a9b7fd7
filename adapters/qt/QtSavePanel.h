#pragma once

#include "platform/SavePanel.h"

namespace dunmora {

class ModalSessions;

/// Lets the user choose in Qt's own file dialog. Never replaces a file.
class QtSavePanel final : public SavePanel {
public:
    /// `sessions` must outlive the panel.
    explicit QtSavePanel(ModalSessions& sessions) : sessions_(sessions) {}

    std::optional<std::filesystem::path> runModal(const std::string& name) override;

private:
    ModalSessions& sessions_;
    // The folder that the next panel shows first.
    std::filesystem::path folder_;
};

}  // namespace dunmora
