#pragma once

#include "platform/OpenPanel.h"

#include <QDBusConnection>

#include <utility>

namespace dunmora {

class ModalSessions;

/// Lets the user choose in the desktop's own file dialog or, where there is none, in Qt's, which
/// has an additional button for folders when it looks for files.
class QtOpenPanel final : public OpenPanel {
public:
    /// `sessions` must outlive the panel; `bus` is the session's bus and may be disconnected.
    QtOpenPanel(ModalSessions& sessions, QDBusConnection bus)
        : sessions_(sessions), bus_(std::move(bus))
    {
    }

    std::optional<std::filesystem::path> runModal(Kind kind,
                                                  const std::filesystem::path& folder) override;

private:
    std::optional<std::filesystem::path> runOwnDialog(Kind kind,
                                                      const std::filesystem::path& start);

    ModalSessions& sessions_;
    QDBusConnection bus_;
    // Where the next panel starts if it is not told.
    std::filesystem::path lastFolder_;
};

}  // namespace dunmora
