#pragma once

#include "platform/Alert.h"

namespace dunmora {

class ModalSessions;
class QtApplication;

/// Shows an alert in a window. Its texts are plain, never markup; a long text scrolls.
class QtAlert final : public Alert {
public:
    /// `application` must outlive the alert.
    explicit QtAlert(QtApplication& application) : application_(application) {}

    int runModal(const AlertContent& content) override;

    /// Does the same for a caller that has only the application's sessions.
    /// Thread: the main thread.
    static int runModal(ModalSessions& sessions, const AlertContent& content);

private:
    QtApplication& application_;
};

}  // namespace dunmora
