#pragma once

#include "platform/SavePanel.h"

#include <QDBusConnection>

#include <utility>

namespace dunmora {

class ModalSessions;

/// Lets the user choose in the desktop's own file dialog or, where there is none, in Qt's. Never
/// replaces a file.
class QtSavePanel final : public SavePanel {
public:
    /// `sessions` must outlive the panel; `bus` is the session's bus and may be disconnected.
    QtSavePanel(ModalSessions& sessions, QDBusConnection bus)
        : sessions_(sessions), bus_(std::move(bus))
    {
    }

    std::optional<std::filesystem::path> runModal(const std::string& name,
                                                  const std::filesystem::path& folder) override;

private:
    std::optional<std::filesystem::path> runOwnDialog(const std::string& name,
                                                      const std::filesystem::path& start);

    ModalSessions& sessions_;
    QDBusConnection bus_;
    // Where the next panel starts if it is not told.
    std::filesystem::path lastFolder_;
};

}  // namespace dunmora
